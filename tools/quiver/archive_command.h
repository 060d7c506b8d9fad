// Filing copies into an archive by hand, and showing what it holds.

#pragma once

#include "command_line.h"

namespace quiver_tool {

Answer runArchive(const ArchiveOptions& options);

}  // namespace quiver_tool
