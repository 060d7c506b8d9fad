// Opening a searched directory.

#pragma once

#include "paku/file_descriptor_posix.h"
#include "paku/searched_directory.h"

namespace PAKU_3_1::internal {

/// Returns nothing when another directory bears the path by now.
FileDescriptor openSearched(const SearchedDirectory& directory);

}  // namespace PAKU_3_1::internal
