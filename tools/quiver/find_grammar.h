// The options of `quiver find`, one command for each kind of file.

#pragma once

#include <CLI/CLI.hpp>

#include "command_line.h"

namespace quiver_tool {

/// The options of one kind; those that a kind does not have are null.
struct FindCommand {
  QV_2_9::search_category_t category = QV_2_9::scBinaryFiles;
  CLI::App* app = nullptr;
  CLI::Option* name = nullptr;
  CLI::Option* directories = nullptr;
  CLI::Option* archives = nullptr;
  CLI::Option* result = nullptr;
  CLI::Option* parents = nullptr;
  CLI::Option* archiveFound = nullptr;
  CLI::Option* binary = nullptr;
  CLI::Option* md5 = nullptr;
  CLI::Option* modificationTime = nullptr;
  CLI::Option* size = nullptr;
  CLI::Option* notNewerThan = nullptr;
  CLI::Option* symbolPath = nullptr;
  CLI::Option* noServers = nullptr;
  CLI::Option* timeout = nullptr;
  CLI::Option* suggestion = nullptr;
  CLI::Option* os = nullptr;
  CLI::Option* all = nullptr;
  CLI::Option* json = nullptr;
  CLI::Option* verbose = nullptr;
};

/// Adds the command for one kind to `find`.
FindCommand addFindCommand(CLI::App& find, QV_2_9::search_category_t category);

/// Throws `UsageError`.
FindOptions readFindOptions(const FindCommand& command);

}  // namespace quiver_tool
