// How often each kind of work was done.

#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quiver_load {

enum class Work {
  kBinaryLookup,
  kSymbolLookup,
  kSourceLookup,
  kSharedSearch,
  kOwnSearch,
  kJournalledSearch,
  kFound,
  kConfirmed,
  kNotFound,
  kException,
  kStoreDownload,
  kServerDownload,
  kCacheEmptied,
  kFileMade,
  kFileRemoved,
  kFileRenamed,
  kDirectoryMade,
  kDirectoryRemoved,
  kDirectoryRenamed,
  kSearchDirAdded,
  kSearchDirsCleared,
  kContainerAdded,
  kSearchReplaced,
  kCallbackAttached,
  kCallbackDisconnected,
  kCallbackDestroyed,
  kSearchStartedCall,
  kFilesFoundCall,
  kNoFilesFoundCall,
  kPolicyCall,
  kMessagesChanged,
  kMessageWritten,
  kCount
};

const char* nameOf(Work work);

/// Any number of threads count at once. Counting orders nothing between threads, or it would hide
/// from the thread sanitizer what it is to find.
class WorkCounts final {
 public:
  void add(Work work) { cell(work).fetch_add(1, std::memory_order_relaxed); }
  std::uint64_t of(Work work) const { return cell(work).load(std::memory_order_relaxed); }
  std::uint64_t lookups() const;
  std::uint64_t downloads() const;
  std::uint64_t callbackChanges() const;
  std::uint64_t fileChanges() const;

  /// Returns the names of what was never done.
  std::vector<std::string> missing() const;

 private:
  using Cell = std::atomic<std::uint64_t>;

  Cell& cell(Work work) { return m_cells[static_cast<std::size_t>(work)]; }
  const Cell& cell(Work work) const { return m_cells[static_cast<std::size_t>(work)]; }
  std::uint64_t sum(Work first, Work last) const;

  std::array<Cell, static_cast<std::size_t>(Work::kCount)> m_cells{};
};

}  // namespace quiver_load
