// Probing a file must not ask the user for a disk.

#pragma once

#include <windows.h>

namespace PAKU_3_1::internal {

/// While it lives, what fails on this thread fails without a message box of the system's: an empty
/// drive, a medium that was taken out, a file that cannot be opened. What the thread does without
/// besides stays so.
class NoDialogs final {
 public:
  NoDialogs() {
    SetThreadErrorMode(GetThreadErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX,
                       &m_former);
  }
  ~NoDialogs() { SetThreadErrorMode(m_former, nullptr); }

  NoDialogs(const NoDialogs&) = delete;
  NoDialogs& operator=(const NoDialogs&) = delete;

 private:
  DWORD m_former = 0;
};

}  // namespace PAKU_3_1::internal
