// See files_finder.h.

#include "search/files_finder.h"

#include "paku/filename.h"
#include "paku/string.h"

#include "search/lookup_journal.h"

namespace QV_2_9 {

namespace {

constexpr int kWholeTree = -1;
constexpr int kDirectoryAlone = 0;

}  // namespace

FilesFinder::FilesFinder(ISearchPathFilter* filter, internal::LookupJournal* journal)
    : m_filter(filter), m_journal(journal) {}

bool FilesFinder::addDirectory(const wchar_t* dir, bool recursive) {
  if (m_filter && m_filter->isExcluded(dir)) {
    if (m_journal)
      m_journal->symbolServerDirectory(dir, recursive);
    return false;
  }
  m_fileSearch.addSearchDirectory(PAKU_3_1::Filename(PAKU_3_1::String(dir), 0, false),
                                  recursive ? kWholeTree : kDirectoryAlone,
                                  0);
  m_empty = false;
  return true;
}

void FilesFinder::clear() {
  m_fileSearch.clearSearchDirectories();
  m_empty = true;
}

void FilesFinder::find(const wchar_t* name, ISearchResultsContainer& results, std::uint32_t step) {
  if (m_empty)
    return;
  FileScanCallback callback(results, step);
  m_fileSearch.find(PAKU_3_1::String(name), callback, m_journal);
}

FilesFinder::FileScanCallback::FileScanCallback(ISearchResultsContainer& results,
                                                std::uint32_t step)
    : m_results(&results), m_step(step) {}

bool FilesFinder::FileScanCallback::onFileFound(const PAKU_3_1::String& path) {
  bool stop = false;
  m_results->addFoundFile(path.wcharPtr(), m_step, stop);
  return !stop;
}

}  // namespace QV_2_9
