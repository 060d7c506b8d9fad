// The options of `quiver find`, one command for each kind of file.

#pragma once

#include "program_command.h"

namespace quiver_tool {

/// Adds the command for one kind to `find`.
ProgramCommand addFindCommand(CLI::App& find, QV_2_9::search_category_t category);

/// Adds a command for one kind with the options of `find` that does `run` with them.
ProgramCommand addLookupCommand(CLI::App& parent,
                                QV_2_9::search_category_t category,
                                const char* description,
                                Answer (*run)(const FindOptions&));

}  // namespace quiver_tool
