// The checksums in a line table's list of files, which the debug data library leaves out.
//
//   header of version 5: length, version, sizes, opcodes, then two lists: directories and files;
//   each list says first which fields an entry has and in which form they are
//
// Reads bytes of unknown origin; what is damaged or of another version yields nothing.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quiver_tool {

/// Returns the MD5 of each file in the table at `offset` of the section .debug_line, in
/// little-endian order of bytes; empty when the table has none.
std::vector<std::string> md5sOfLineTable(std::string_view section, std::size_t offset);

}  // namespace quiver_tool
