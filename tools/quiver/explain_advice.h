// What would make a file found that was not.

#pragma once

#include <string>
#include <vector>

#include "command_line.h"
#include "explain_story.h"
#include "lookup.h"

namespace quiver_tool {

/// Returns sentences without full stops. Empty when the file was found. `areServersOff`: servers
/// are named and not to be asked.
std::vector<std::string> adviceFor(const FindOptions& options,
                                   const Outcome& outcome,
                                   const Story& story,
                                   bool areServersOff);

}  // namespace quiver_tool
