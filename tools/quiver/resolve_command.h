// `quiver resolve`: all files of a manifest at once.

#pragma once

#include "program_command.h"

namespace quiver_tool {

ProgramCommand addResolveCommand(CLI::App& app);

}  // namespace quiver_tool
