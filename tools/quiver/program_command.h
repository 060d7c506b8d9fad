// What every command of the program is to the rest of it: options, and a job to do with them.

#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

#include "command_line.h"

namespace quiver_tool {

struct ProgramCommand {
  CLI::App* app = nullptr;
  std::string words;  ///< As the user types them: "find sym".
  /// Reads the options that were given. Throws `UsageError`.
  std::function<Job()> read;
};

}  // namespace quiver_tool
