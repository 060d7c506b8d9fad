// `quiver identify`: what symbol servers go by, read from the files themselves.

#pragma once

#include "program_command.h"

namespace quiver_tool {

ProgramCommand addIdentifyCommand(CLI::App& app);

}  // namespace quiver_tool
