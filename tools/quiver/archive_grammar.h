// The options of `quiver archive`.

#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "command_line.h"

namespace quiver_tool {

struct ArchiveCommand {
  CLI::App* app = nullptr;
  CLI::Option* directory = nullptr;
  CLI::Option* files = nullptr;
  CLI::Option* category = nullptr;
  CLI::Option* list = nullptr;
  CLI::Option* verify = nullptr;
  CLI::Option* json = nullptr;
};

ArchiveCommand addArchiveCommand(CLI::App& app);

/// Throws `UsageError`.
ArchiveOptions readArchiveOptions(const ArchiveCommand& command);

/// Marks, behind the word "archive", what is no option, so that the option parser takes any number
/// of files whatever their names: it would split "[a,b]" and run "find". Other command lines stay
/// as they are. The marks are gone from what `readArchiveOptions` returns.
void markOperands(std::vector<std::string>& arguments);

/// Takes the marks out of a text of the option parser.
std::string withoutMarks(std::string text);

}  // namespace quiver_tool
