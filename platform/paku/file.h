// A regular file's content, for reading; and the right to replace a file.

#pragma once

#include <cstdint>

#include "paku/filename.h"
#include "paku/string.h"

namespace PAKU_3_1 {

/// Holds the file open from construction to destruction. Only regular files can be opened: nothing
/// here ever waits for a writer or a device.
class File final {
 public:
  explicit File(const Filename& filename);
  ~File();

  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// Returns 0 when the file is open, a system error code otherwise.
  int lastOpStatus() const { return m_status; }

  /// Returns the MD5 of the whole content as 32 lower-case hexadecimal digits. Empty when the file
  /// is not open or cannot be read to its end.
  String md5checksum();

 private:
  std::intptr_t m_handle = -1;
  int m_status = 0;
};

/// What opening a file for reading comes to.
enum class Readability {
  kMissing,  ///< Nothing bears the name.
  kDirectory,
  kUnreadable,  ///< Also what is neither a file nor a directory.
  kReadable,
};

/// Looks once, and opens nothing but a regular file.
Readability readability(const Filename& filename);

/// Makes a regular file that exists writable when `writable` is true. Nothing is created, nothing
/// truncated, and nothing reported: who writes afterwards sees whether it worked.
class FileModifiable final {
 public:
  FileModifiable(const Filename& filename, bool writable);
};

}  // namespace PAKU_3_1
