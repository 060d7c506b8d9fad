// See sym_file_search_strategy.h.

#include "search/sym_file_search_strategy.h"

#include "os/os_specific_routines.h"
#include "os/path_utils.h"
#include "search/lookup_journal.h"
#include "search/search_step.h"

namespace QV_2_9 {

namespace {

void addUnlessEmpty(ISearchResultsContainer& results,
                    const std::wstring& path,
                    search_step_t step) {
  if (path.empty())
    return;
  bool stop = false;
  results.addFoundFile(path.c_str(), internal::stepValue(step, false), stop);
}

}  // namespace

SymFileSearchStrategy::SymFileSearchStrategy(ISearchEnv* searchEnv,
                                             const wchar_t* symFile,
                                             const wchar_t* binaryFile,
                                             const wchar_t* checksum,
                                             IValidatorInternal* validator,
                                             ISymbolDownloadProgress* downloadProgress)
    : CategoryFileSearchStrategy(searchEnv, symFile, binaryFile, checksum, validator),
      m_downloadProgress(downloadProgress) {}

void SymFileSearchStrategy::searchHighPriorityDirs(ISearchResultsContainer& results) {
  BasicFileSearchStrategy::searchHighPriorityDirs(results);
  downloadFromSearchDirs(ssHighPrioritySearchDirs, true, results);
}

void SymFileSearchStrategy::searchLowPriorityDirs(ISearchResultsContainer& results) {
  BasicFileSearchStrategy::searchLowPriorityDirs(results);
  downloadFromSearchDirs(ssLowPrioritySearchDirs, false, results);
}

void SymFileSearchStrategy::downloadFromSearchDirs(search_step_t step,
                                                   bool highPriority,
                                                   ISearchResultsContainer& results) {
  if (!searchEnv())
    return;
  const ObjectPtr<ISearchDirIterator> dirs = searchEnv()->getSearchDirs(getCategory());
  if (!dirs)
    return;
  std::vector<std::wstring> elements;
  internal::forEachSearchDir(dirs, [&](const wchar_t* dir, bool, bool high) {
    if (high == highPriority)
      elements.emplace_back(dir);
  });
  addUnlessEmpty(results, download(&elements), step);
}

void SymFileSearchStrategy::searchSystemDirs(ISearchResultsContainer& results) {
  BasicFileSearchStrategy::searchSystemDirs(results);
  addUnlessEmpty(results, download(nullptr), ssSystemDirs);
}

std::wstring SymFileSearchStrategy::download(const std::vector<std::wstring>* elements) {
  IOSSpecificRoutines& routines = *getOSSpecificRoutines();
  const wchar_t* const binary = binaryFile().c_str();
  auto* const watched = journal() ? dynamic_cast<IWatchedDownloads*>(&routines) : nullptr;
  if (watched)
    return watched->downloadWatched(binary, elements, m_downloadProgress, *journal());
  return elements ? routines.downloadSymbolFile(binary, *elements, m_downloadProgress)
                  : routines.downloadSymbolFileFromEnvironment(binary, m_downloadProgress);
}

void SymFileSearchStrategy::lookupAroundBinary(ISearchResultsContainer& results) {
  walkAroundBinary(binaryFile(), results);
  guessFromBinaryName(results);
}

void SymFileSearchStrategy::guessFromBinaryName(ISearchResultsContainer& results) {
  // With equal base names the walk has looked there already. Intended: letter case counts, and an
  // empty binary name makes a guess too, which then does not exist.
  if (baseNameOf(binaryFile().c_str()) == baseNameOf(fileName().c_str()))
    return;
  const std::wstring guess =
      replaceExtension(binaryFile().c_str(), extensionOf(fileName().c_str()).c_str());
  bool stop = false;
  results.addFoundFile(guess.c_str(), internal::stepValue(ssAroundBinaryLookup, false), stop);
}

void SymFileSearchStrategy::addSystemDirs(ISearchDirectoryContainer& container) {
  getOSSpecificRoutines()->addSymSystemDirs(container);
}

bool SymFileSearchStrategy::isExcluded(const wchar_t* dir) {
  return getOSSpecificRoutines()->isSymbolServerPath(dir);
}

}  // namespace QV_2_9
