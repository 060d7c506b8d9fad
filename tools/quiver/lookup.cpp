#include "lookup.h"

#include <filesystem>
#include <functional>
#include <system_error>

#include "download_progress.h"
#include "lookup_callbacks.h"
#include "quiver/quiver.h"
#include "result_scope.h"
#include "search_scope.h"
#include "standard_streams.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

using QV_2_9::IChecksum;
using QV_2_9::IChecksumCalculator;
using QV_2_9::IFileSearch;
using QV_2_9::IValidatorCallback;

/// Nothing when nobody would see it.
std::function<void(const std::string&)> terminalForProgress() {
  if (!isTerminalForDiagnostics())
    return nullptr;
  return writeDiagnostics;
}

const wchar_t* orNull(const std::optional<std::wstring>& text) {
  return text ? text->c_str() : nullptr;
}

ObjectPtr<IChecksum> expectedChecksum(const FindOptions& options) {
  if (!options.md5)
    return nullptr;
  return IChecksumCalculator::create()->createChecksum(QV_2_9::ctMD5, options.md5->c_str());
}

ObjectPtr<IValidFile> ask(IFileSearch& search,
                          const FindOptions& options,
                          IValidatorCallback& check,
                          DownloadProgress& progress) {
  const wchar_t* name = options.name.c_str();
  const std::optional<std::wstring> binary =
      options.binary ? std::optional(binaryName(*options.binary)) : std::nullopt;
  const wchar_t* suggestion = orNull(options.suggestion);
  switch (options.category) {
    case QV_2_9::scSymbolFiles:
      return search.findSymFile(name, orNull(binary), nullptr, &check, suggestion, &progress);
    case QV_2_9::scSourceFiles:
      return search.findSrcFile(name, orNull(binary), nullptr, &check, suggestion);
    default:
      return search.findBinFile(name, &check, suggestion);
  }
}

bool isSuggestionMissing(const FindOptions& options) {
  std::error_code ignored;
  return options.suggestion && !std::filesystem::exists(toNativePath(*options.suggestion), ignored);
}

Outcome lookUpWith(const FindOptions& options,
                   IValidatorCallback& check,
                   QV_2_9::ISearchJournal* journal) {
  Outcome outcome;
  ChoosingCallback choosing(options.isAll);
  ShowingCallback showing(choosing, outcome);
  ResultScope scope(options.results);
  scope.setSearchDirs(searchDirs(options));
  scope.setCallbacks(choosing, showing);
  const std::vector<QV_2_9::search_category_t> categories{options.category};
  const ObjectPtr<IFileSearch> search = QV_2_9::createFileSearchWithJournal(
      scope.createSearchEnv(archiveDirs(options, categories), environmentInfo(options)), journal);
  DownloadProgress progress(terminalForProgress());
  if (const ObjectPtr<IValidFile> file = ask(*search, options, check, progress))
    outcome.found = toFoundFile(*file);
  if (outcome.found && options.isArchivingFound)
    outcome.archived = scope.archive(outcome.found->path, options.category);
  outcome.isInterrupted = progress.wasInterrupted();
  outcome.unusable = unusableDirectories(options, categories);
  outcome.isSuggestionMissing = isSuggestionMissing(options);
  return outcome;
}

}  // namespace

Outcome lookUp(const FindOptions& options, QV_2_9::ISearchJournal* journal) {
  if (options.notNewerThan) {
    QV_2_9::SourceFileUpToDateCheckValidator check(options.notNewerThan->c_str());
    return lookUpWith(options, check, journal);
  }
  if (options.modificationTime || options.size) {
    QV_2_9::SourceFileTimeAndSizeMatchValidator check(options.modificationTime.value_or(0),
                                                      options.size.value_or(0));
    return lookUpWith(options, check, journal);
  }
  QV_2_9::ChecksumValidator check(options.category, expectedChecksum(options));
  return lookUpWith(options, check, journal);
}

}  // namespace quiver_tool
