// See bin_file_search_strategy.h.

#include "search/bin_file_search_strategy.h"

#include "os/os_specific_routines.h"

namespace QV_2_9 {

BinFileSearchStrategy::BinFileSearchStrategy(ISearchEnv* searchEnv,
                                             const wchar_t* binFile,
                                             IValidatorInternal* validator)
    : CategoryFileSearchStrategy(searchEnv, binFile, nullptr, nullptr, validator) {}

bool BinFileSearchStrategy::lookupAbsoluteName(ISearchResultsContainer& results) {
  // False also stands for a duplicate; the translation is tried then all the same.
  if (BasicFileSearchStrategy::lookupAbsoluteName(results))
    return true;
  return getOSSpecificRoutines()->findByAbsoluteName(fileName().c_str(), results, osType());
}

void BinFileSearchStrategy::lookupAroundBinary(ISearchResultsContainer&) {}

void BinFileSearchStrategy::addSystemDirs(ISearchDirectoryContainer& container) {
  getOSSpecificRoutines()->addBinSystemDirs(container);
}

}  // namespace QV_2_9
