// Bytes of the command line and of the output <-> the wide text of the library.
//
// Any file name makes the round trip. Where names are bytes, those that are not UTF-8 become the
// code points U+DC80 to U+DCFF and turn back into the same bytes, as the library does with file
// names. Where names are UTF-16, half of a surrogate pair that stands alone is written as if it
// were a character, in three bytes.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quiver_tool {

std::wstring toWide(std::string_view bytes);

/// What no file name of this system can hold (a value past the last code point, a lone surrogate
/// that stands for no byte where names are bytes) becomes U+FFFD.
std::string toBytes(std::wstring_view text);

/// Always UTF-8: each unit of the text that is no character becomes U+FFFD.
std::string toUtf8(std::wstring_view text);

/// Returns the text as a path that the standard file library opens under that very name.
std::filesystem::path toNativePath(std::wstring_view text);

/// The other way round.
std::wstring fromNativePath(const std::filesystem::path& path);

/// Returns the bytes with control characters spelled out (a line feed as "\x0a"), for a terminal:
/// also those above ASCII, which some terminals obey.
std::string escapeControls(std::string_view bytes);

}  // namespace quiver_tool
