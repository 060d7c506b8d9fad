// The story of a lookup as text and as JSON.

#pragma once

#include <string>
#include <vector>

#include "command_line.h"
#include "explain_story.h"
#include "lookup.h"

namespace quiver_tool {

/// For people, UTF-8 with control characters spelled out.
std::string storyText(const FindOptions& options,
                      const Outcome& outcome,
                      const Story& story,
                      const std::vector<std::string>& advice);

/// One JSON document, described in quiver(1), with a line feed at its end.
std::string storyJson(const FindOptions& options,
                      const Outcome& outcome,
                      const Story& story,
                      const std::vector<std::string>& advice);

}  // namespace quiver_tool
