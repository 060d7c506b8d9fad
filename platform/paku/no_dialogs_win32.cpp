// Message boxes are held back thread by thread.

#include <windows.h>
#include <type_traits>

#include "paku/no_dialogs.h"

namespace PAKU_3_1 {

static_assert(std::is_same_v<DWORD, unsigned long>);

NoDialogs::NoDialogs() {
  SetThreadErrorMode(GetThreadErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX,
                     &m_former);
}

NoDialogs::~NoDialogs() {
  SetThreadErrorMode(m_former, nullptr);
}

}  // namespace PAKU_3_1
