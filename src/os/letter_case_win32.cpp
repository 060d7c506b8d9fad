// Case folding of the run-time library: A to Z unless the process chose another locale.

#include <cwctype>

#include "os/letter_case.h"

namespace QV_2_9::internal {

wchar_t lowerCaseOf(wchar_t letter) {
  return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(letter)));
}

wchar_t upperCaseOf(wchar_t letter) {
  return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(letter)));
}

}  // namespace QV_2_9::internal
