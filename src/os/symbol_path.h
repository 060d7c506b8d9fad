// The symbol path, in the one syntax that every system shares: the variable _NT_SYMBOL_PATH, with
// elements between semicolons. An element is a directory, or a symbol server when it begins with
// "srv*" or "symsrv*".

#pragma once

#include <string>
#include <vector>

#include "search/file_search_strategy.h"

namespace QV_2_9::internal {

/// Returns true for an element that names a symbol server, in any letter case.
bool isSymbolServerElement(const wchar_t* element);

/// Returns the elements in order, servers included. Empty when the variable is unset or empty.
std::vector<std::wstring> symbolPathElements();

/// Adds every element, not recursive. Server elements are left to the filter of the scan.
void addSymbolPathElements(ISearchDirectoryContainer& dirs);

}  // namespace QV_2_9::internal
