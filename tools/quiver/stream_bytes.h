// How bytes leave the program.

#pragma once

#include <cstdio>
#include <string>

namespace quiver_tool {

/// Writes UTF-8 to a stream, through to what is behind it. Returns false, with `errno` set, when
/// not all of it could be written.
bool writeBytes(std::FILE* stream, const std::string& bytes);

}  // namespace quiver_tool
