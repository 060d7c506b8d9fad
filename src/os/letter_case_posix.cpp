// Case folding by plain arithmetic: the result must not change with the process's locale.

#include "os/letter_case.h"

namespace QV_2_9::internal {

wchar_t lowerCaseOf(wchar_t letter) {
  return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter - L'A' + L'a') : letter;
}

wchar_t upperCaseOf(wchar_t letter) {
  return letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - L'a' + L'A') : letter;
}

}  // namespace QV_2_9::internal
