// One directory scan: collects directories, runs the file library's search over them for one name,
// and offers every hit to the results container until the container has a confirmed file.

#pragma once

#include <cstdint>

#include "paku/file_search.h"

#include "search/file_search_strategy.h"

namespace QV_2_9 {

namespace internal {
class LookupJournal;
}

/// Lives on the stack of one search step.
class FilesFinder final : public ISearchDirectoryContainer {
 public:
  /// `filter` keeps directories out, `journal` hears of them; both may be null and are not owned.
  explicit FilesFinder(ISearchPathFilter* filter, internal::LookupJournal* journal = nullptr);

  bool addDirectory(const wchar_t* dir, bool recursive) override;
  void clear() override;

  /// Offers every file called `name` below the directories to `results` under the step value
  /// `step`. Does nothing when no directory was accepted.
  void find(const wchar_t* name, ISearchResultsContainer& results, std::uint32_t step);

  /// Returns true when no directory was accepted since construction or the last `clear`.
  bool empty() const { return m_empty; }

  class FileScanCallback final : public PAKU_3_1::IFileScanCallback {
   public:
    FileScanCallback(ISearchResultsContainer& results, std::uint32_t step);

    /// Returns false, which ends the scan, when `path` became a confirmed file.
    bool onFileFound(const PAKU_3_1::String& path) override;

   private:
    ISearchResultsContainer* m_results;
    std::uint32_t m_step;
  };

 private:
  ISearchPathFilter* m_filter;
  internal::LookupJournal* m_journal;
  PAKU_3_1::FileSearch m_fileSearch;
  bool m_empty = true;
};

}  // namespace QV_2_9
