// The symbol path and the servers in it, as the command line wants them.

#pragma once

#include <string>
#include <vector>

#include "command_line.h"

namespace quiver_tool {

/// Returns true for an element that names a symbol server, in any letter case.
bool isSymbolServer(const std::wstring& element);

/// Returns a symbol path without its servers.
std::wstring withoutServers(const std::wstring& symbolPath);

/// Returns the directories of a symbol path.
std::vector<std::wstring> directoriesOf(const std::wstring& symbolPath);

/// Returns true when a server is named that is not to be asked. Call it before
/// `applySymbolOptions`.
bool isAnyServerTurnedOff(const SearchPlaces& places);

/// Sets the variables of this process by which the library knows the symbol path and the limits of
/// servers. Call it before the first lookup.
void applySymbolOptions(const SearchPlaces& places, bool isVerbose);

}  // namespace quiver_tool
