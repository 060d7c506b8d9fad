// The JSON form of a resolution, described in quiver(1).

#pragma once

#include <nlohmann/json.hpp>

#include "resolution.h"

namespace quiver_tool {

/// Returns the document of `quiver resolve --json`. With `hasJournals` each file has its journal
/// too, as numbers, and the document the texts that they refer to: the data of the report's page.
nlohmann::ordered_json resolutionDocument(const Resolution& resolution, bool hasJournals);

}  // namespace quiver_tool
