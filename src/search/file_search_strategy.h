// The contract between the search driver, the results container, a category's strategy and the
// validator.

#pragma once

#include <cstdint>

#include "quiver/object.h"
#include "quiver/search_results.h"
#include "quiver/validation.h"

namespace QV_2_9 {

class IFilesFoundCallback;
class INoFilesFoundCallback;
class ISearchStartedCallback;
class IStringContainer;

/// Takes candidates. The one place where a path becomes a valid or an invalid file.
class ISearchResultsContainer {
 public:
  /// Tests, validates and files `path`. Sets `stop` when a check confirmed it, so that a running
  /// scan can end. Returns true when the path became a new valid file.
  virtual bool addFoundFile(const wchar_t* path, std::uint32_t step, bool& stop) = 0;  // 0

 protected:
  ~ISearchResultsContainer() = default;
};

/// What the six steps and the three callbacks mean for one category. Operation n is step n.
class IFileSearchStrategy {
 public:
  virtual bool fireSearchStarted(ISearchStartedCallback* callback,
                                 IStringContainer& suggestions) = 0;          // 0
  virtual void searchArchiveDirs(ISearchResultsContainer& results) = 0;       // 1
  virtual void searchHighPriorityDirs(ISearchResultsContainer& results) = 0;  // 2
  virtual bool lookupAbsoluteName(ISearchResultsContainer& results) = 0;      // 3
  virtual void searchSystemDirs(ISearchResultsContainer& results) = 0;        // 4
  virtual void lookupAroundBinary(ISearchResultsContainer& results) = 0;      // 5
  virtual void searchLowPriorityDirs(ISearchResultsContainer& results) = 0;   // 6
  virtual ObjectPtr<IValidFile> fireFilesFound(IFilesFoundCallback* callback,
                                               IValidFileIterator& files) = 0;  // 7
  virtual ObjectPtr<IValidFile> fireNoFilesFound(INoFilesFoundCallback* callback,
                                                 IInvalidFileIterator& invalidFiles,
                                                 IValidFileIterator& validFiles) = 0;  // 8

 protected:
  ~IFileSearchStrategy() = default;
};

/// The validator as the results container sees it.
class IValidatorInternal : public IValidator {
 public:
  /// `step` is a step value; the files record only its number, the policy gets all of it.
  virtual ObjectPtr<IValidatedFile> validateInStep(const wchar_t* path,
                                                   std::uint32_t step) = 0;  // 1

 protected:
  ~IValidatorInternal() = default;
};

/// Takes the directories of one scan.
class ISearchDirectoryContainer {
 public:
  /// Returns true when the directory was accepted; it need not exist.
  virtual bool addDirectory(const wchar_t* dir, bool recursive) = 0;  // 0
  virtual void clear() = 0;                                           // 1

 protected:
  ~ISearchDirectoryContainer() = default;
};

/// Keeps directories out of scans.
class ISearchPathFilter {
 public:
  /// Returns true for a directory that must not be scanned.
  virtual bool isExcluded(const wchar_t* dir) = 0;  // 0

 protected:
  ~ISearchPathFilter() = default;
};

}  // namespace QV_2_9
