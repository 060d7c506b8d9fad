// The symbol path and the servers in it, as the command line wants them.

#pragma once

#include <string>

#include "command_line.h"

namespace quiver_tool {

/// Returns true for an element that names a symbol server, in any letter case.
bool isSymbolServer(const std::wstring& element);

/// Returns a symbol path without its servers.
std::wstring withoutServers(const std::wstring& symbolPath);

/// Sets the variables of this process by which the library knows the symbol path and the limits of
/// servers. Call it before the first lookup.
void applySymbolOptions(const SearchPlaces& places, bool isVerbose);

}  // namespace quiver_tool
