// The data of the page that `quiver resolve` writes: the JSON document, with journals, made small.
//
// Beside what the document has there is an array `texts`. In files the members that say the same of
// many are numbers of such texts, members without a value are left out, and a journal is one array
// of numbers, event behind event (see lookup_record.h).

#pragma once

#include <nlohmann/json.hpp>

#include "resolution.h"

namespace quiver_tool {

nlohmann::ordered_json reportData(const Resolution& resolution);

}  // namespace quiver_tool
