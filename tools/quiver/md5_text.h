// The argument of --md5.

#pragma once

#include <string>

namespace quiver_tool {

/// Throws `UsageError` unless `text` is 32 hexadecimal digits. The complaint gives the number of
/// characters and the first that is no digit.
void checkMd5Text(const std::wstring& text);

}  // namespace quiver_tool
