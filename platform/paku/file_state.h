// What tells one content of a file from another without reading it.
//
// Whoever changes the content changes the second time, which programs cannot set back; so does
// whoever puts another file under the name. A change within the same tick of the clock as the one
// before it does not show.

#pragma once

#include <cstdint>
#include <optional>

#include "paku/filename.h"

namespace PAKU_3_1 {

/// Times are nanoseconds since 1970.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t file = 0;  ///< Its number on the device.
  std::uint64_t size = 0;
  std::int64_t modified = 0;
  std::int64_t changed = 0;  ///< Content, name or rights.
  bool operator==(const FileState&) const = default;
};

/// Returns the state of the file that bears the name, links being followed. Nothing when there is
/// none or it cannot be told.
std::optional<FileState> fileState(const Filename& filename);

}  // namespace PAKU_3_1
