// Probing a file must not ask the user for a disk.

#pragma once

namespace PAKU_3_1 {

/// While it lives, what fails on this thread fails without a message box of the system's: an empty
/// drive, a medium that was taken out, a file that cannot be opened. What the thread does without
/// besides stays so. Systems without such boxes have nothing to do.
class NoDialogs final {
 public:
  NoDialogs();
  ~NoDialogs();

  NoDialogs(const NoDialogs&) = delete;
  NoDialogs& operator=(const NoDialogs&) = delete;

 private:
  unsigned long m_former = 0;
};

}  // namespace PAKU_3_1
