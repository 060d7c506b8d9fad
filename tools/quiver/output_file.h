// The files that the program writes for its user. They appear whole or not at all: the content is
// gathered beside the file and gets its name at the end, so that a full disk or a killed program
// leaves what was there before.
//
// What is no regular file (a device, a pipe) is written to as it is.

#pragma once

#include <string>
#include <string_view>

namespace quiver_tool {

/// Returns why the file could not be written now, or an empty text. Leaves everything as it is: to
/// be asked before work that takes long.
std::string outputObstacle(const std::wstring& path);

/// Returns why the file could not be written, or an empty text.
std::string writeOutputFile(const std::wstring& path, std::string_view content);

/// Returns true when both paths lead to the same thing, which exists.
bool isSameFile(const std::wstring& a, const std::wstring& b);

}  // namespace quiver_tool
