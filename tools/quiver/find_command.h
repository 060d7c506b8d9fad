// Finding one file, and what the program says of it.

#pragma once

#include "command_line.h"

namespace quiver_tool {

Answer runFind(const FindOptions& options);

}  // namespace quiver_tool
