// A file that gets its name only when it is complete.

#pragma once

#include <string>

#include "paku/file_descriptor_posix.h"

namespace PAKU_3_1::internal {

/// Owns a new file under a name of its own in the target's directory, and removes it unless
/// `publish` gave it the target's name.
class TemporaryFile final {
 public:
  /// Failure to create the file shows in `error`.
  explicit TemporaryFile(const std::string& target);
  ~TemporaryFile();

  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  int error() const { return m_error; }
  int fd() const { return m_file.get(); }

  /// Gives the file the target's name. Only a regular file or a link is ever replaced, and without
  /// `overwrite` nothing is. Returns 0 or an errno value.
  int publish(bool overwrite);

 private:
  int open(const std::string& target);
  int openDirectory(const std::string& path);
  int createFile();

  /// Returns the errno value that speaks against the target's name, or 0.
  int targetRefusal(bool overwrite) const;

  FileDescriptor m_directory;
  FileDescriptor m_file;
  std::string m_targetName;
  std::string m_name;  // of the file while it exists and is not published
  int m_error;
};

}  // namespace PAKU_3_1::internal
