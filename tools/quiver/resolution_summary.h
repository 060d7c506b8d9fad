// How many files of each kind were found and by what, and why the others were not.

#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "resolution.h"

namespace quiver_tool {

struct StepCount {
  std::int64_t confirmed = 0;
  std::int64_t notContradicted = 0;
};

struct KindSummary {
  QV_2_9::search_category_t category = QV_2_9::scBinaryFiles;
  std::int64_t files = 0;
  std::int64_t found = 0;
  std::int64_t notFound = 0;
  std::int64_t notTried = 0;
  std::map<std::int32_t, StepCount> foundBy;  ///< By the number of the step.
  std::map<MissReason, std::int64_t> missed;
};

/// Returns one summary each for binaries, symbol files and sources, in this order.
std::array<KindSummary, 3> summarize(const Resolution& resolution);

/// Returns the summary as lines for people.
std::string summaryText(const Resolution& resolution);

}  // namespace quiver_tool
