// What a lookup prints.

#pragma once

#include <string>

#include "command_line.h"
#include "lookup.h"

namespace quiver_tool {

struct Report {
  std::string out;  ///< Standard output: paths, or one JSON document.
  std::string err;  ///< Standard error, UTF-8 with control characters spelled out.
};

/// Returns one line for each of the directories.
std::string unusableLines(const UnusableDirectories& directories);

/// Returns the line that says what became of the answer's copy; empty when none was asked for.
std::string archivedLine(const Outcome& outcome);

Report makeReport(const FindOptions& options, const Outcome& outcome);

/// Returns one sentence without a full stop: what was rejected and why or that nothing was there,
/// and which directories do not exist or cannot be read.
std::string notFoundSentence(const FindOptions& options, const Outcome& outcome);

/// Returns the outcome as one JSON document, described in quiver(1), with a line feed at its end.
std::string toJson(const FindOptions& options, const Outcome& outcome);

}  // namespace quiver_tool
