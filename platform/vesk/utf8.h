// Wide text as UTF-8.

#pragma once

#include <string>
#include <string_view>

namespace vesk_1_8 {

/// Appends `text`, read as UTF-16 or UTF-32 by the width of wchar_t. A surrogate pair is one
/// character at either width; what is no character becomes U+FFFD.
void appendUtf8(std::string& out, std::wstring_view text);

}  // namespace vesk_1_8
