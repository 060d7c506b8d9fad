// How a source file is searched: also around its binary. Sources have no system directories.

#pragma once

#include "search/basic_file_search_strategy.h"

namespace QV_2_9 {

class SrcFileSearchStrategy final : public CategoryFileSearchStrategy<internal::SrcOps> {
 public:
  SrcFileSearchStrategy(ISearchEnv* searchEnv,
                        const wchar_t* srcFile,
                        const wchar_t* binaryFile,
                        const wchar_t* checksum,
                        IValidatorInternal* validator);

  void lookupAroundBinary(ISearchResultsContainer& results) override;
  void addSystemDirs(ISearchDirectoryContainer& container) override;
};

}  // namespace QV_2_9
