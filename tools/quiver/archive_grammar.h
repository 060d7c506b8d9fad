// The options of `quiver archive`.

#pragma once

#include "program_command.h"

namespace quiver_tool {

ProgramCommand addArchiveCommand(CLI::App& app);

}  // namespace quiver_tool
