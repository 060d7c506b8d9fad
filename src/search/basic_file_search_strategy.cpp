// See basic_file_search_strategy.h.

#include "search/basic_file_search_strategy.h"

#include <optional>

#include "core/lock.h"
#include "os/os_specific_routines.h"
#include "os/path_utils.h"
#include "search/files_finder.h"
#include "search/search_step.h"

namespace QV_2_9 {
namespace {

QVLock environmentInfoLock;

/// Returns the kind of the analysed system, nothing without information. Searches that run at once
/// share one information object, whose count may be a plain one: every reference that a search
/// takes is gone again before another search takes its own.
std::optional<std::int32_t> recordedOSType(ISearchEnv* searchEnv) {
  if (!searchEnv)
    return std::nullopt;
  const LockGuard guard(&environmentInfoLock);
  const ObjectPtr<IEnvironmentInfo> info = searchEnv->getEnvironmentInfo();
  return info ? std::optional(info->getOSType()) : std::nullopt;
}

}  // namespace

void internal::forEachSearchDir(const ObjectPtr<ISearchDirIterator>& dirs,
                                const std::function<void(const wchar_t*, bool, bool)>& visit) {
  if (!dirs)
    return;
  const wchar_t* dir = nullptr;
  bool recursive = false;
  bool highPriority = false;
  for (dirs->reset(); dirs->get(dir, recursive, highPriority); dirs->next())
    if (dir)  // a caller's own iterator may have entries without a text
      visit(dir, recursive, highPriority);
}

BasicFileSearchStrategy::BasicFileSearchStrategy(ISearchEnv* searchEnv, const wchar_t* fileName)
    : m_searchEnv(searchEnv), m_fileName(fileName ? fileName : L"") {
  if (const std::optional<std::int32_t> type = recordedOSType(searchEnv))
    m_fileName = getOSSpecificRoutines()->mapFileName(m_fileName.c_str(), *type);
}

std::int32_t BasicFileSearchStrategy::osType() const {
  return recordedOSType(m_searchEnv).value_or(0);
}

bool BasicFileSearchStrategy::isExcluded(const wchar_t*) {
  return false;
}

void BasicFileSearchStrategy::searchArchiveDirs(ISearchResultsContainer& results) {
  if (!m_searchEnv)
    return;
  // An archive keeps all versions of a file in a folder that bears the file's name.
  const std::wstring name = fileNameOf(m_fileName.c_str());
  for (const search_category_t category : {getCategory(), scAllFiles}) {
    FilesFinder finder(this, m_journal);
    internal::forEachSearchDir(m_searchEnv->getArchiveSearchDirs(category),
                               [&](const wchar_t* dir, bool, bool) {
                                 // An empty text is no archive, least of all the current directory.
                                 if (isEmpty(dir))
                                   return;
                                 finder.addDirectory(joinPath(dir, name.c_str()).c_str(), true);
                               });
    finder.find(name.c_str(), results, internal::stepValue(ssArchiveSearchDirs, true));
  }
}

void BasicFileSearchStrategy::searchHighPriorityDirs(ISearchResultsContainer& results) {
  searchDirs(ssHighPrioritySearchDirs, true, results);
}

void BasicFileSearchStrategy::searchLowPriorityDirs(ISearchResultsContainer& results) {
  searchDirs(ssLowPrioritySearchDirs, false, results);
}

void BasicFileSearchStrategy::searchDirs(search_step_t step,
                                         bool highPriority,
                                         ISearchResultsContainer& results) {
  if (!m_searchEnv)
    return;
  const std::wstring& name = nameInDirectories();
  for (const search_category_t category : {getCategory(), scAllFiles}) {
    const ObjectPtr<ISearchDirIterator> dirs = m_searchEnv->getSearchDirs(category);
    FilesFinder finder(this, m_journal);
    for (const bool trees : {false, true}) {
      finder.clear();
      internal::forEachSearchDir(dirs, [&](const wchar_t* dir, bool recursive, bool high) {
        if (recursive == trees && high == highPriority)
          finder.addDirectory(dir, recursive);
      });
      finder.find(name.c_str(), results, internal::stepValue(step, trees));
    }
  }
}

const std::wstring& BasicFileSearchStrategy::nameInDirectories() {
  if (m_nameInDirectories.empty())
    m_nameInDirectories = searchName(m_fileName.c_str());
  return m_nameInDirectories;
}

bool BasicFileSearchStrategy::lookupAbsoluteName(ISearchResultsContainer& results) {
  bool stop = false;
  return results.addFoundFile(
      m_fileName.c_str(), internal::stepValue(ssAbsoluteNameLookup, false), stop);
}

void BasicFileSearchStrategy::searchSystemDirs(ISearchResultsContainer& results) {
  FilesFinder finder(this, m_journal);
  addSystemDirs(finder);
  // Intended: the name as it is, where the other directory steps look for the search name.
  finder.find(m_fileName.c_str(), results, internal::stepValue(ssSystemDirs, false));
}

void BasicFileSearchStrategy::walkAroundBinary(const std::wstring& binaryFile,
                                               ISearchResultsContainer& results) {
  if (binaryFile.empty())
    return;
  const std::wstring& name = nameInDirectories();
  for (std::wstring dir = directoryOf(binaryFile.c_str()); !dir.empty();
       dir = parentDirectory(dir.c_str())) {
    FilesFinder finder(this, m_journal);
    finder.addDirectory(dir.c_str(), false);
    finder.find(name.c_str(), results, internal::stepValue(ssAroundBinaryLookup, false));
  }
}

}  // namespace QV_2_9
