// The journal of a lookup, made from what its callbacks were shown.

#pragma once

#include "lookup.h"
#include "lookup_record.h"

namespace quiver_tool {

/// Returns the steps in order with the candidates of each and what became of them. The steps behind
/// the one that found the file have not run.
LookupRecord journalOf(const Outcome& outcome, TextPool& texts);

}  // namespace quiver_tool
