// The JSON form of a resolution, described in quiver(1).

#pragma once

#include <nlohmann/json.hpp>

#include "resolution.h"

namespace quiver_tool {

/// Returns the document of `quiver resolve --json`; without `hasRejected` the files do not have the
/// candidates that were rejected.
nlohmann::ordered_json resolutionDocument(const Resolution& resolution, bool hasRejected);

}  // namespace quiver_tool
