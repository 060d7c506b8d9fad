// Counts and their names.

#include "load/work_counts.h"

namespace quiver_load {
namespace {

constexpr std::array kNames = {"binaries looked up",
                               "symbol files looked up",
                               "sources looked up",
                               "through the shared search",
                               "through own searches",
                               "of these with a journal",
                               "found",
                               "confirmed by MD5",
                               "not found",
                               "exceptions of callbacks",
                               "downloads from a directory",
                               "downloads from a server",
                               "caches emptied",
                               "files made",
                               "files removed",
                               "files renamed",
                               "directories made",
                               "directories removed",
                               "directories renamed",
                               "search directories added",
                               "search directories cleared",
                               "containers added to chains",
                               "shared searches replaced",
                               "callbacks attached",
                               "callbacks disconnected",
                               "callbacks destroyed",
                               "search-started calls",
                               "files-found calls",
                               "no-files-found calls",
                               "policy calls",
                               "message registrations changed",
                               "messages written"};
static_assert(kNames.size() == static_cast<std::size_t>(Work::kCount));

}  // namespace

const char* nameOf(Work work) {
  return kNames[static_cast<std::size_t>(work)];
}

std::uint64_t WorkCounts::sum(Work first, Work last) const {
  std::uint64_t sum = 0;
  for (int i = static_cast<int>(first); i <= static_cast<int>(last); ++i)
    sum += of(static_cast<Work>(i));
  return sum;
}

std::uint64_t WorkCounts::lookups() const {
  return sum(Work::kBinaryLookup, Work::kSourceLookup);
}

std::uint64_t WorkCounts::downloads() const {
  return sum(Work::kStoreDownload, Work::kServerDownload);
}

std::uint64_t WorkCounts::callbackChanges() const {
  return sum(Work::kCallbackAttached, Work::kCallbackDestroyed);
}

std::uint64_t WorkCounts::fileChanges() const {
  return sum(Work::kFileMade, Work::kDirectoryRenamed);
}

std::vector<std::string> WorkCounts::missing() const {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < m_cells.size(); ++i)
    if (of(static_cast<Work>(i)) == 0)
      names.emplace_back(kNames[i]);
  return names;
}

}  // namespace quiver_load
