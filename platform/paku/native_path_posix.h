// A path as system calls take it.

#pragma once

#include <string>
#include <string_view>

namespace PAKU_3_1::internal {

/// Writes the bytes of a path, without separators at its end unless it is the root. Returns false,
/// with `bytes` unspecified, for a text that can name no file: an empty one, one longer than any
/// system call takes, one that stands for no bytes or that has a NUL in it.
bool nativePath(std::wstring_view text, std::string& bytes);

}  // namespace PAKU_3_1::internal
