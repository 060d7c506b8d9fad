// What JSON documents of lookups have in common.

#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "quiver/resolution_context.h"

namespace quiver_tool {

nlohmann::ordered_json pathsArray(const std::vector<std::wstring>& paths);

/// Returns what became of the answer's copy; null without a value.
nlohmann::ordered_json archivedObject(const std::optional<QV_2_9::archive_result_t>& code);

}  // namespace quiver_tool
