// See src_file_search_strategy.h.

#include "search/src_file_search_strategy.h"

#include "os/os_specific_routines.h"

namespace QV_2_9 {

SrcFileSearchStrategy::SrcFileSearchStrategy(ISearchEnv* searchEnv,
                                             const wchar_t* srcFile,
                                             const wchar_t* binaryFile,
                                             const wchar_t* checksum,
                                             IValidatorInternal* validator)
    : CategoryFileSearchStrategy(searchEnv, srcFile, binaryFile, checksum, validator) {}

void SrcFileSearchStrategy::lookupAroundBinary(ISearchResultsContainer& results) {
  walkAroundBinary(binaryFile(), results);
}

void SrcFileSearchStrategy::addSystemDirs(ISearchDirectoryContainer& container) {
  getOSSpecificRoutines()->addSrcSystemDirs(container);
}

}  // namespace QV_2_9
