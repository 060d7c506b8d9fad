#include "lookup.h"

#include <filesystem>
#include <functional>
#include <system_error>

#include "download_progress.h"
#include "lookup_callbacks.h"
#include "quiver/quiver.h"
#include "result_scope.h"
#include "standard_streams.h"
#include "symbol_servers.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

using QV_2_9::IChecksum;
using QV_2_9::IChecksumCalculator;
using QV_2_9::IEditableEnvironmentInfo;
using QV_2_9::IEditableSearchDirContainer;
using QV_2_9::IEnvironmentInfo;
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

ObjectPtr<IEditableSearchDirContainer> searchDirs(const FindOptions& options) {
  ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  for (const SearchDirectory& dir : options.directories) {
    if (options.isWithoutServers && isSymbolServer(dir.path))
      continue;
    dirs->addSearchDir(dir.category, dir.path.c_str(), dir.isRecursive, dir.isHighPriority);
  }
  return dirs;
}

ObjectPtr<IEditableSearchDirContainer> archiveDirs(const FindOptions& options) {
  ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  for (const std::wstring& path : options.archives)
    dirs->addSearchDir(options.category, path.c_str(), true, true);
  return dirs;
}

ObjectPtr<IEnvironmentInfo> environmentInfo(const FindOptions& options) {
  if (!options.osType)
    return nullptr;
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  info->setOSType(*options.osType);
  return info;
}

ObjectPtr<IChecksum> expectedChecksum(const FindOptions& options) {
  if (!options.md5)
    return nullptr;
  return IChecksumCalculator::create()->createChecksum(QV_2_9::ctMD5, options.md5->c_str());
}

// The library takes the binary's directories from its name alone. A file of this machine is named
// in full, so that all directories above it count; a recorded name is left as it is.
std::optional<std::wstring> binaryName(const FindOptions& options) {
  std::error_code error;
  if (!options.binary || !std::filesystem::exists(toNativePath(*options.binary), error))
    return options.binary;
  const std::filesystem::path path =
      std::filesystem::absolute(toNativePath(*options.binary), error);
  return error ? options.binary : fromNativePath(path);
}

ObjectPtr<IValidFile> ask(IFileSearch& search,
                          const FindOptions& options,
                          IValidatorCallback& check,
                          DownloadProgress& progress) {
  const wchar_t* name = options.name.c_str();
  const std::optional<std::wstring> binary = binaryName(options);
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

bool isDirectory(const std::wstring& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(toNativePath(path), ignored);
}

std::vector<std::wstring> missingDirectories(const FindOptions& options) {
  std::vector<std::wstring> missing;
  for (const std::wstring& path : options.results) {
    if (!isDirectory(path))
      missing.push_back(path);
  }
  for (const std::wstring& path : options.archives) {
    if (!isDirectory(path))
      missing.push_back(path);
  }
  for (const SearchDirectory& dir : options.directories) {
    const bool isUsed = dir.category == options.category || dir.category == QV_2_9::scAllFiles;
    if (isUsed && !isSymbolServer(dir.path) && !isDirectory(dir.path))
      missing.push_back(dir.path);
  }
  return missing;
}

bool isSuggestionMissing(const FindOptions& options) {
  std::error_code ignored;
  return options.suggestion && !std::filesystem::exists(toNativePath(*options.suggestion), ignored);
}

Outcome lookUpWith(const FindOptions& options, IValidatorCallback& check) {
  Outcome outcome;
  ChoosingCallback choosing(options.isAll);
  ShowingCallback showing(choosing, outcome);
  ResultScope scope(options.results);
  scope.setSearchDirs(searchDirs(options));
  scope.setCallbacks(choosing, showing);
  const ObjectPtr<IFileSearch> search =
      IFileSearch::create(scope.createSearchEnv(archiveDirs(options), environmentInfo(options)));
  DownloadProgress progress(terminalForProgress());
  if (const ObjectPtr<IValidFile> file = ask(*search, options, check, progress))
    outcome.found = toFoundFile(*file);
  if (outcome.found && options.isArchivingFound)
    outcome.archived = scope.archive(outcome.found->path, options.category);
  outcome.isInterrupted = progress.wasInterrupted();
  outcome.missingDirectories = missingDirectories(options);
  outcome.isSuggestionMissing = isSuggestionMissing(options);
  return outcome;
}

}  // namespace

Outcome lookUp(const FindOptions& options) {
  if (options.notNewerThan) {
    QV_2_9::SourceFileUpToDateCheckValidator check(options.notNewerThan->c_str());
    return lookUpWith(options, check);
  }
  if (options.modificationTime || options.size) {
    QV_2_9::SourceFileTimeAndSizeMatchValidator check(options.modificationTime.value_or(0),
                                                      options.size.value_or(0));
    return lookUpWith(options, check);
  }
  QV_2_9::ChecksumValidator check(options.category, expectedChecksum(options));
  return lookUpWith(options, check);
}

}  // namespace quiver_tool
