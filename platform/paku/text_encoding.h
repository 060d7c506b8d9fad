// Wide text for the bytes that a POSIX system calls names, and back.
//
// UTF-8, whatever the process's locale is. Bytes that are not UTF-8 are kept as U+DC80 to U+DCFF,
// so every name makes the round trip.

#pragma once

#include <string>
#include <string_view>

namespace PAKU_3_1 {

std::wstring decode(std::string_view bytes);

/// Returns false for a text that stands for no bytes; no file can have that name.
bool encode(std::wstring_view text, std::string& bytes);

}  // namespace PAKU_3_1
