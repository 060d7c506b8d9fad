// A manifest as `quiver resolve` takes it: the files in the order in which they are looked for.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "resolution.h"

namespace quiver_tool {

struct RecordedManifest {
  std::optional<std::int32_t> osType;  ///< Of the analysed system.
  std::vector<RecordedFile> files;     ///< Each binary before what belongs to it.
};

/// Throws `std::runtime_error` with one line that says what is wrong and where.
RecordedManifest readRecordedManifest(const std::wstring& path);

}  // namespace quiver_tool
