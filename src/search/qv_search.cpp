// See qv_search.h.

#include "search/qv_search.h"

#include <string>

#include "config/search_env_text.h"
#include "core/lock.h"
#include "core/string_container.h"
#include "core/trace.h"
#include "events/locked_callback.h"
#include "os/path_utils.h"
#include "search/bin_file_search_strategy.h"
#include "search/found_files_lazy_iterator.h"
#include "search/lookup_journal.h"
#include "search/src_file_search_strategy.h"
#include "search/sym_file_search_strategy.h"
#include "search/trace_lines.h"
#include "validation/validator.h"

namespace QV_2_9 {

namespace {

/// Guards the reference counts of all file searches: they are shared between threads.
QVLock s_counterLock;

/// Empty when the caller's containers throw: tracing is no reason to fail.
std::wstring textOf(const ObjectPtr<ISearchEnv>& env) try {
  return L"m_pSearchEnv(scBinaryFiles) = " + searchEnvToString(env, scBinaryFiles) +
         L", m_pSearchEnv(scSymbolFiles) = " + searchEnvToString(env, scSymbolFiles) +
         L", m_pSearchEnv(scSourceFiles) = " + searchEnvToString(env, scSourceFiles) +
         L", m_pSearchEnv(scAllFiles) = " + searchEnvToString(env, scAllFiles);
} catch (...) {
  return {};
}

}  // namespace

ObjectPtr<IFileSearch> IFileSearch::create(const ObjectPtr<ISearchEnv>& searchEnv) {
  return new FileSearch(searchEnv);
}

ObjectPtr<IFileSearch> createFileSearchWithJournal(const ObjectPtr<ISearchEnv>& searchEnv,
                                                   ISearchJournal* journal) {
  return new FileSearch(searchEnv, journal);
}

FileSearch::FileSearch(const ObjectPtr<ISearchEnv>& searchEnv, ISearchJournal* journal)
    : RefCountImpl(&s_counterLock),
      m_pSearchEnv(searchEnv),
      m_journal(journal),
      m_confidenceLevelPolicy(searchEnv) {
  vesk_1_8::Trace trace(internal::traceChannel());
  trace.init("QV_2_9::FileSearch::FileSearch");
  QV_TRACE(trace, internal::kLineSearchEnvironment)
      << "Search environment: " << textOf(m_pSearchEnv);
}

ObjectPtr<IValidFile> FileSearch::findBinFile(const wchar_t* binFile,
                                              IValidatorCallback* validatorCallback,
                                              const wchar_t* suggestedResolution) {
  vesk_1_8::Trace trace(internal::traceChannel());
  trace.init("QV_2_9::FileSearch::findBinFile");
  if (isEmpty(binFile))
    return nullptr;
  Validator validator(validatorCallback, m_confidenceLevelPolicy, scBinaryFiles);
  BinFileSearchStrategy strategy(m_pSearchEnv.get(), binFile, &validator);
  QV_TRACE(trace, internal::kLineSearchingBinFile) << "Searching bin file:" << binFile;
  return findFile(strategy, validator, suggestedResolution);
}

ObjectPtr<IValidFile> FileSearch::findSymFile(const wchar_t* symFile,
                                              const wchar_t* binaryFile,
                                              const wchar_t* checksum,
                                              IValidatorCallback* validatorCallback,
                                              const wchar_t* suggestedResolution,
                                              ISymbolDownloadProgress* downloadProgress) {
  vesk_1_8::Trace trace(internal::traceChannel());
  trace.init("QV_2_9::FileSearch::findSymFile");
  if (isEmpty(symFile))
    return nullptr;
  Validator validator(validatorCallback, m_confidenceLevelPolicy, scSymbolFiles);
  SymFileSearchStrategy strategy(
      m_pSearchEnv.get(), symFile, binaryFile, checksum, &validator, downloadProgress);
  QV_TRACE(trace, internal::kLineSearchingSymFile)
      << "Searching sym file:" << symFile << ", binary file:" << binaryFile
      << ", checksum:" << checksum;
  return findFile(strategy, validator, suggestedResolution);
}

ObjectPtr<IValidFile> FileSearch::findSrcFile(const wchar_t* srcFile,
                                              const wchar_t* binaryFile,
                                              const wchar_t* checksum,
                                              IValidatorCallback* validatorCallback,
                                              const wchar_t* suggestedResolution) {
  vesk_1_8::Trace trace(internal::traceChannel());
  trace.init("QV_2_9::FileSearch::findSrcFile");
  if (isEmpty(srcFile))
    return nullptr;
  Validator validator(validatorCallback, m_confidenceLevelPolicy, scSourceFiles);
  SrcFileSearchStrategy strategy(m_pSearchEnv.get(), srcFile, binaryFile, checksum, &validator);
  QV_TRACE(trace, internal::kLineSearchingSrcFile)
      << "Searching src file:" << srcFile << ", binary file:" << binaryFile
      << ", checksum:" << checksum;
  return findFile(strategy, validator, suggestedResolution);
}

ObjectPtr<IValidFile> FileSearch::findFile(BasicFileSearchStrategy& strategy,
                                           Validator& validator,
                                           const wchar_t* suggestedResolution) {
  if (!m_journal)
    return findFile(strategy, validator, suggestedResolution, nullptr);
  internal::LookupJournal journal(*m_journal, static_cast<bool>(m_pSearchEnv));
  strategy.setJournal(&journal);
  validator.setJournal(&journal);
  const internal::SoughtFile sought = strategy.sought();
  journal.began({strategy.getCategory(),
                 sought.name,
                 strategy.nameInDirectories().c_str(),
                 sought.binary,
                 sought.checksum});
  ObjectPtr<IValidFile> answer;
  try {
    answer = findFile(strategy, validator, suggestedResolution, &journal);
  } catch (...) {
    journal.broken();
    throw;
  }
  journal.ended(answer);
  return answer;
}

ObjectPtr<IValidFile> FileSearch::findFile(IFileSearchStrategy& strategy,
                                           IValidatorInternal& validator,
                                           const wchar_t* suggestedResolution,
                                           internal::LookupJournal* journal) {
  vesk_1_8::Trace trace(internal::traceChannel());
  trace.init("QV_2_9::FileSearch::findFile");
  StringContainer suggestions;
  suggestions.add(suggestedResolution);
  const std::size_t own = suggestions.m_list.size();
  const bool proceed = fireSearchStarted(strategy, suggestions);
  QV_TRACE(trace, internal::kLineSuggestedResolutions)
      << "Suggested resolutions after callback: suggestedResolutions: "
      << stringContainerToString(suggestions);

  // Suggestions are validated even when the search was cancelled: the no-files-found callback may
  // want to see them.
  FoundFilesLazyIterator files(strategy, validator, journal);
  std::size_t index = 0;
  for (const std::wstring& suggestion : suggestions.m_list) {
    if (journal)
      journal->suggested(suggestion.c_str(), index++ >= own);
    files.addSuggestedResolution(suggestion.c_str());
  }
  if (journal && !proceed)
    journal->stops(jnCanceled);

  const ObjectPtr<IValidFile> first = proceed ? files.next() : nullptr;
  if (first) {
    if (const ObjectPtr<IValidFile> chosen =
            chooseFoundFile(trace, strategy, files, first, journal))
      return chosen;
  }
  return askForFile(trace, strategy, files, journal);
}

bool FileSearch::fireSearchStarted(IFileSearchStrategy& strategy, StringContainer& suggestions) {
  if (!m_pSearchEnv)
    return true;
  LockedCallback<ISearchStartedCallback> callback(m_pSearchEnv->getSearchStartedCallback());
  return !callback || strategy.fireSearchStarted(callback.get(), suggestions);
}

// The two tests for a callback, without and with its lock, have texts of their own, so that a trace
// shows which of them failed.
ObjectPtr<IValidFile> FileSearch::chooseFoundFile(vesk_1_8::Trace& trace,
                                                  IFileSearchStrategy& strategy,
                                                  FoundFilesLazyIterator& files,
                                                  const ObjectPtr<IValidFile>& first,
                                                  internal::LookupJournal* journal) {
  if (journal)
    journal->answers(jaStep);
  if (!m_pSearchEnv || !m_pSearchEnv->getFilesFoundCallback().getCallback()) {
    QV_TRACE(trace, internal::kLineFilesFoundNotInstalled)
        << "Returning the first found, no filesFoundCallback established";
    return first;
  }
  LockedCallback<IFilesFoundCallback> callback(m_pSearchEnv->getFilesFoundCallback());
  if (!callback) {
    QV_TRACE(trace, internal::kLineFilesFoundGone)
        << "Returning the first found, no pFilesFoundCallback established";
    return first;
  }
  files.reset();
  const ObjectPtr<IValidFile> chosen = strategy.fireFilesFound(callback.get(), files);
  callback.release();
  if (journal && chosen)
    journal->answers(jaFilesFoundCallback);
  else if (journal)
    journal->stops(jnRefused);
  if (chosen) {
    QV_TRACE(trace, internal::kLineResultOfFilesFound)
        << "Returning the result = " << chosen->getPath() << " after pFilesFoundCallback";
  }
  return chosen;
}

ObjectPtr<IValidFile> FileSearch::askForFile(vesk_1_8::Trace& trace,
                                             IFileSearchStrategy& strategy,
                                             FoundFilesLazyIterator& files,
                                             internal::LookupJournal* journal) {
  if (journal)
    journal->answers(jaNoFilesFoundCallback);
  if (!m_pSearchEnv || !m_pSearchEnv->getNoFilesFoundCallback().getCallback()) {
    QV_TRACE(trace, internal::kLineNoFilesFoundNotInstalled)
        << "Returning the NULL result, no noFilesFoundCallback established";
    return nullptr;
  }
  LockedCallback<INoFilesFoundCallback> callback(m_pSearchEnv->getNoFilesFoundCallback());
  if (!callback) {
    callback.release();
    QV_TRACE(trace, internal::kLineNoFilesFoundGone) << "Nothing found, returning";
    return nullptr;
  }
  files.invalidFilesIterator().reset();
  files.validFilesIterator().reset();
  const ObjectPtr<IValidFile> chosen = strategy.fireNoFilesFound(
      callback.get(), files.invalidFilesIterator(), files.validFilesIterator());
  callback.release();
  if (!chosen) {
    QV_TRACE(trace, internal::kLineNothingOfNoFilesFound)
        << "Nothing found after pNoFilesFoundCallback";
    return nullptr;
  }
  QV_TRACE(trace, internal::kLineResultOfNoFilesFound)
      << "Returning the result = " << chosen->getPath() << " after pNoFilesFoundCallback";
  return chosen;
}

}  // namespace QV_2_9
