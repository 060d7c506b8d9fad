// Columns for people to read.

#pragma once

#include <string>
#include <vector>

namespace quiver_tool {

/// Returns one line per row, each column as wide as its widest text. Rows must be equally long.
std::string alignedTable(const std::vector<std::vector<std::string>>& rows);

}  // namespace quiver_tool
