// What the system says of the thing that bears a name.

#pragma once

#include <cstdint>

#include "paku/filename.h"

namespace PAKU_3_1 {

struct FileInfo {
  bool isDirectory = false;
  bool isRegular = false;
  std::uint64_t size = 0;
  std::int64_t modificationTime = 0;  ///< Whole seconds since 1970-01-01 UTC, rounded down.
};

/// Returns 0 when something bears exactly this name: a file, a directory or a special file, links
/// being followed. Otherwise returns a system error code and leaves `info` as it is. Separators at
/// the end do not matter. `flags` is not used.
int fileInfo(const Filename& filename, int flags, FileInfo& info);

}  // namespace PAKU_3_1
