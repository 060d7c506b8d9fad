// Which errors of a thread the system shows in message boxes.

#pragma once

#include <windows.h>

namespace quiver_test {

/// The thread's mode for the time of a test.
class ScopedErrorMode final {
 public:
  explicit ScopedErrorMode(DWORD mode) { SetThreadErrorMode(mode, &m_former); }
  ~ScopedErrorMode() { SetThreadErrorMode(m_former, nullptr); }

  ScopedErrorMode(const ScopedErrorMode&) = delete;
  ScopedErrorMode& operator=(const ScopedErrorMode&) = delete;

 private:
  DWORD m_former = 0;
};

}  // namespace quiver_test
