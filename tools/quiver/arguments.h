// The words of the command line, as UTF-8.

#pragma once

#include <string>
#include <vector>

namespace quiver_tool {

/// Takes what `main` was given. Where the system has a better text than that, it counts.
std::vector<std::string> commandLineArguments(int argc, const char* const* argv);

}  // namespace quiver_tool
