// The arguments of --mtime and --size, as the checks of source files compare them.

#pragma once

#include <cstdint>
#include <string>

namespace quiver_tool {

/// Reads a whole number of seconds since 1970-01-01 UTC, or the name of a file whose modification
/// time is taken. Throws `UsageError` for what is neither, and for time 0, which counts as not
/// recorded.
std::int64_t parseModificationTime(const std::wstring& text);

/// Reads a number of bytes and returns its low 32 bits as a signed number, which is how sizes are
/// recorded; such a number, which may be negative, is taken too. Throws `UsageError` for anything
/// else, and when the low 32 bits are 0, which counts as not recorded.
std::int64_t parseSize(const std::wstring& text);

}  // namespace quiver_tool
