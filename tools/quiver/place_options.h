// The options that say where to look, which several commands have.

#pragma once

#include <CLI/CLI.hpp>

#include "command_line.h"

namespace quiver_tool {

/// Those that a command does not have are null.
struct PlaceOptions {
  CLI::Option* directories = nullptr;
  CLI::Option* archives = nullptr;
  CLI::Option* result = nullptr;
  CLI::Option* parents = nullptr;
  CLI::Option* archiveFound = nullptr;
  CLI::Option* symbolPath = nullptr;
  CLI::Option* noServers = nullptr;
  CLI::Option* timeout = nullptr;
  CLI::Option* os = nullptr;
};

/// Adds the options for directories, archives and results.
void addPlaceOptions(CLI::App& app, PlaceOptions& options);

/// Adds the options for the symbol path and its servers.
void addServerOptions(CLI::App& app, PlaceOptions& options);

void addSystemOption(CLI::App& app, PlaceOptions& options);

/// Reads what was given; a directory without a kind is filed under `sought`. Throws `UsageError`.
void readPlaces(const PlaceOptions& options,
                QV_2_9::search_category_t sought,
                SearchPlaces& places);

}  // namespace quiver_tool
