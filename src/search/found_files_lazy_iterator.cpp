// See found_files_lazy_iterator.h.

#include "search/found_files_lazy_iterator.h"

#include <iterator>

#include "core/trace.h"
#include "os/path_utils.h"
#include "search/lookup_journal.h"
#include "search/search_step.h"
#include "search/trace_lines.h"

namespace QV_2_9 {
namespace {

/// Adds a file to both or, when memory runs out, to neither: a callback may go on after that, and
/// the paths are the files' own. Returns false for a path that is there already.
template <class Paths, class Files, class File>
bool addNew(Paths& paths, Files& files, const File& file) {
  const auto [place, isNew] = paths.insert(file->getPath());
  if (!isNew)
    return false;
  try {
    files.push_back(file);
  } catch (...) {
    paths.erase(place);
    throw;
  }
  return true;
}

}  // namespace

std::size_t FoundFilesLazyIterator::HashIgnoreCase::operator()(const wchar_t* path) const {
  return internal::hashIgnoreCase(path);
}

bool FoundFilesLazyIterator::EqualIgnoreCase::operator()(const wchar_t* a, const wchar_t* b) const {
  return compareIgnoreCase(a, b) == 0;
}

FoundFilesLazyIterator::FoundFilesLazyIterator(IFileSearchStrategy& strategy,
                                               IValidatorInternal& validator,
                                               internal::LookupJournal* journal)
    : m_strategy(strategy),
      m_validator(validator),
      m_journal(journal),
      m_validFilesIterator(m_validFiles),
      m_invalidFilesIterator(m_invalidFiles),
      m_cursor(m_validFiles.begin()) {}

void FoundFilesLazyIterator::addSuggestedResolution(const wchar_t* path) {
  bool ignored = false;
  addFoundFile(path, static_cast<std::uint32_t>(kSuggestedResolutionStep), ignored);
}

void FoundFilesLazyIterator::reset() {
  m_cursor = m_validFiles.begin();
}

ObjectPtr<IValidFile> FoundFilesLazyIterator::next() {
  vesk_1_8::Trace trace(internal::traceChannel());
  trace.init("QV_2_9::FoundFilesLazyIterator::next");
  while (m_cursor == m_validFiles.end()) {
    if (m_step > ssLowPrioritySearchDirs) {
      QV_TRACE(trace, internal::kLineNothingFoundInSteps) << "Nothing found";
      return nullptr;
    }
    const auto step = static_cast<search_step_t>(m_step);
    if (m_journal)
      runStepForJournal(step);
    else
      runStep();
    ++m_step;  // only now: a step that throws runs again on the next call
  }
  // Intended: the step named is the last one that ran, not the file's own.
  QV_TRACE(trace, internal::kLineFoundFile)
      << "Found file: " << (*m_cursor)->getPath()
      << " in step: " << searchStepToString(static_cast<search_step_t>(m_step - 1));
  return *m_cursor++;
}

void FoundFilesLazyIterator::runStepForJournal(search_step_t step) {
  m_journal->stepBegan(step);
  try {
    runStep();
  } catch (...) {
    m_journal->stepBroken(step);
    throw;
  }
  m_journal->stepEnded(step);
}

void FoundFilesLazyIterator::runStep() {
  switch (m_step) {
    case ssArchiveSearchDirs:
      return m_strategy.searchArchiveDirs(*this);
    case ssHighPrioritySearchDirs:
      return m_strategy.searchHighPriorityDirs(*this);
    case ssAbsoluteNameLookup:
      m_strategy.lookupAbsoluteName(*this);
      return;
    case ssSystemDirs:
      return m_strategy.searchSystemDirs(*this);
    case ssAroundBinaryLookup:
      return m_strategy.lookupAroundBinary(*this);
    default:
      return m_strategy.searchLowPriorityDirs(*this);
  }
}

bool FoundFilesLazyIterator::addFoundFile(const wchar_t* path, std::uint32_t step, bool& stop) {
  stop = false;
  if (!path)
    return false;
  if (!internal::exists(path)) {
    if (m_journal)
      m_journal->missing(path, step);
    return false;
  }
  // Validation comes before the duplicate tests: a duplicate is one of a list, and only the verdict
  // says which. A file may thus stand in both lists.
  const ObjectPtr<IValidatedFile> validated = m_validator.validateInStep(path, step);
  if (!validated)
    return false;
  const ObjectPtr<IValidFile> valid = validated->getValidFile();
  const ObjectPtr<IInvalidFile> invalid = valid ? nullptr : validated->getInvalidFile();
  const bool isNew = valid ? addValidFile(valid, stop) : invalid && addInvalidFile(invalid);
  if (m_journal)
    m_journal->judged(validated, step, isNew);
  return valid && isNew;
}

bool FoundFilesLazyIterator::addValidFile(const ObjectPtr<IValidFile>& file, bool& stop) {
  if (!addNew(m_validPaths, m_validFiles, file))
    return false;
  if (m_cursor == m_validFiles.end())
    m_cursor = std::prev(m_validFiles.end());
  stop = file->getConfidenceLevel() == 0;
  return true;
}

bool FoundFilesLazyIterator::addInvalidFile(const ObjectPtr<IInvalidFile>& file) {
  return addNew(m_invalidPaths, m_invalidFiles, file);
}

}  // namespace QV_2_9
