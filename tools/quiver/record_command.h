// `quiver record`: makes a manifest from binaries.

#pragma once

#include "program_command.h"

namespace quiver_tool {

ProgramCommand addRecordCommand(CLI::App& app);

}  // namespace quiver_tool
