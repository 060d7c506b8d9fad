// How a binary module is searched: when the recorded name is no path here, the operating-system
// routines translate it. Nothing is looked for around a binary.

#pragma once

#include "search/basic_file_search_strategy.h"

namespace QV_2_9 {

class BinFileSearchStrategy final : public CategoryFileSearchStrategy<internal::BinOps> {
 public:
  BinFileSearchStrategy(ISearchEnv* searchEnv,
                        const wchar_t* binFile,
                        IValidatorInternal* validator);

  bool lookupAbsoluteName(ISearchResultsContainer& results) override;
  void lookupAroundBinary(ISearchResultsContainer& results) override;
  void addSystemDirs(ISearchDirectoryContainer& container) override;
};

}  // namespace QV_2_9
