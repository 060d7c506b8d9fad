// Bytes of the command line and of the output <-> the wide text of the library.

#pragma once

#include <string>
#include <string_view>

#include "quiver/file_system_path.h"

namespace quiver_tool {

using QV_2_9::fromNativePath;
using QV_2_9::toNativePath;

inline std::wstring toWide(std::string_view bytes) {
  return QV_2_9::fromNameBytes(bytes);
}

inline std::string toBytes(std::wstring_view text) {
  return QV_2_9::toNameBytes(text);
}

/// Always UTF-8: each unit of the text that is no character becomes U+FFFD.
std::string toUtf8(std::wstring_view text);

/// Returns the bytes with control characters spelled out (a line feed as "\x0a"), for a terminal:
/// also those above ASCII, which some terminals obey.
std::string escapeControls(std::string_view bytes);

}  // namespace quiver_tool
