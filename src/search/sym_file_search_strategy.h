// How a symbol file is searched: also around its binary, under the binary's own name, and on the
// symbol servers that stand among the search directories and in the symbol path.

#pragma once

#include <string>
#include <vector>

#include "quiver/symbol_download.h"
#include "search/basic_file_search_strategy.h"

namespace QV_2_9 {

class SymFileSearchStrategy final : public CategoryFileSearchStrategy<internal::SymOps> {
 public:
  /// `downloadProgress` is the caller's, handed on untouched; it may be null.
  SymFileSearchStrategy(ISearchEnv* searchEnv,
                        const wchar_t* symFile,
                        const wchar_t* binaryFile,
                        const wchar_t* checksum,
                        IValidatorInternal* validator,
                        ISymbolDownloadProgress* downloadProgress);

  void searchHighPriorityDirs(ISearchResultsContainer& results) override;
  void searchSystemDirs(ISearchResultsContainer& results) override;
  void lookupAroundBinary(ISearchResultsContainer& results) override;
  void searchLowPriorityDirs(ISearchResultsContainer& results) override;
  void addSystemDirs(ISearchDirectoryContainer& container) override;

  /// Symbol servers are no directories: they are served by downloads.
  bool isExcluded(const wchar_t* dir) override;

 private:
  void downloadFromSearchDirs(search_step_t step,
                              bool highPriority,
                              ISearchResultsContainer& results);
  /// Returns the path of what a server of `elements` has; null stands for the environment's.
  std::wstring download(const std::vector<std::wstring>* elements);
  void guessFromBinaryName(ISearchResultsContainer& results);

  ISymbolDownloadProgress* m_downloadProgress;
};

}  // namespace QV_2_9
