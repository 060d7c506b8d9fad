// Comparison on top of the system's case folding.

#include "os/letter_case.h"

namespace QV_2_9::internal {

bool startsWithIgnoreCase(const wchar_t* text, const wchar_t* prefix) {
  if (!text)
    text = L"";
  for (; *prefix; ++text, ++prefix) {
    if (lowerCaseOf(*text) != lowerCaseOf(*prefix))
      return false;
  }
  return true;
}

}  // namespace QV_2_9::internal
