// Which letters differ only in case, and texts compared on that ground. The system decides: Windows
// folds as its run-time library does, other systems fold A to Z only, whatever the locale says.

#pragma once

namespace QV_2_9::internal {

wchar_t lowerCaseOf(wchar_t letter);
wchar_t upperCaseOf(wchar_t letter);

/// A null text begins with nothing but the empty prefix.
bool startsWithIgnoreCase(const wchar_t* text, const wchar_t* prefix);

}  // namespace QV_2_9::internal
