// What the user asked `quiver resolve` for.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "command_line.h"

namespace quiver_tool {

/// Files recorded below `from` lie below `to` on this machine.
struct PathRule {
  std::wstring from;
  std::wstring to;
};

struct ResolveOptions {
  SearchPlaces places;
  std::wstring manifest;
  std::vector<PathRule> rules;
  bool isLearning = false;
  std::optional<std::wstring> report;  ///< The page to write.
  bool isJson = false;
  bool isVerbose = false;
};

}  // namespace quiver_tool
