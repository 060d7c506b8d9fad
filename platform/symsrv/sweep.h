// Removes what processes that were killed left in a store.

#pragma once

#include <chrono>

#include "symsrv/directory_store.h"

namespace symsrv_1_0::internal {

/// Removes files in the making that nobody has touched for `age`. Walks the folders of the store
/// that this module makes, not through links, and not much further than a store is deep. Does so
/// once a day at most and gives up after two seconds; the time of day is kept in the store.
void sweepTemporaries(const DirectoryStore& store, std::chrono::seconds age);

}  // namespace symsrv_1_0::internal
