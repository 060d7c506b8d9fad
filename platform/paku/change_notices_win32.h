// What the system tells of changes below a directory.
//
// One handle, with a port of its own for what is told: a notice is in the port when the change that
// it tells of is done, whichever thread asks, and asking outlives the thread that began it.

#pragma once

#include <windows.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "paku/file_handle_win32.h"

namespace PAKU_3_1::internal {

class ChangeNotices final {
 public:
  /// `directory` is open for listing and for asynchronous work.
  explicit ChangeNotices(FileHandle directory);
  ~ChangeNotices();

  ChangeNotices(const ChangeNotices&) = delete;
  ChangeNotices& operator=(const ChangeNotices&) = delete;

  /// Returns false when the system tells nothing here.
  bool isOpen() const { return m_isAsking; }

  /// Appends the paths, below the directory, of what has changed since this was asked last. Never
  /// waits. Returns false when notices were lost or cannot be had any more.
  bool take(std::vector<std::wstring>& paths);

 private:
  static constexpr DWORD kBufferSize = 64 * 1024;  // more is refused by some file servers

  bool ask();
  bool takePortion(DWORD size, std::vector<std::wstring>& paths) const;

  FileHandle m_directory;
  FileHandle m_port;
  std::unique_ptr<DWORD[]> m_buffer;  // the system writes into it as long as it is asked
  OVERLAPPED m_request = {};
  bool m_isAsking = false;
};

/// Returns whether notices come in time: when a change is done. Emulations of the system send them
/// some time later, from another process, and not for all directories.
bool areNoticesInTime();

/// For tests, which wait until notices have come.
void trustLateNotices(bool isTrusted);

}  // namespace PAKU_3_1::internal
