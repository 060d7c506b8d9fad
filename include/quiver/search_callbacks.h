// The four callbacks through which a search asks its caller.
//
// Derive from an interface, override its three operations (one per file category), and install the
// object in a search environment. The environment refers to it weakly: see event_generator.h.
// Inside an operation do not install, replace, copy or destroy a callback (or a holder) of the same
// class: it would wait for itself. An exception thrown by a callback passes through to the caller
// of the search.

#pragma once

#include <stdint.h>

#include "quiver/event_generator.h"
#include "quiver/export.h"
#include "quiver/object.h"
#include "quiver/search_dirs.h"

namespace QV_2_9 {

class IInvalidFileIterator;
class IStringContainer;
class IValidFile;
class IValidFileIterator;
class IValidator;

class QV_API SearchStartedEventGenerator : public EventGenerator {
 public:
  ISpinSharedLock* getLock() override;  // 1
};

class QV_API FilesFoundEventGenerator : public EventGenerator {
 public:
  ISpinSharedLock* getLock() override;  // 1
};

class QV_API NoFilesFoundEventGenerator : public EventGenerator {
 public:
  ISpinSharedLock* getLock() override;  // 1
};

class QV_API ConfidenceLevelPolicyEventGenerator : public EventGenerator {
 public:
  ISpinSharedLock* getLock() override;  // 1
};

/// Asked once per search, before any step. May add suggested paths, which are validated first, in
/// order. False skips all six steps; the suggestions are still validated and shown to the
/// no-files-found callback.
///
/// Implemented by: the caller.
/// Lifetime: the caller's own.
/// Threads: the thread of the search; several searches may call at once.
/// Failure: none.
class ISearchStartedCallback : public SearchStartedEventGenerator {
 public:
  virtual bool onBinSearchStarted(const wchar_t* binFile, IStringContainer& suggestions) = 0;  // 2
  virtual bool onSymSearchStarted(const wchar_t* symFile,
                                  const wchar_t* binaryFile,
                                  const wchar_t* checksum,
                                  IStringContainer& suggestions) = 0;  // 3
  virtual bool onSrcSearchStarted(const wchar_t* srcFile,
                                  const wchar_t* binaryFile,
                                  const wchar_t* checksum,
                                  IStringContainer& suggestions) = 0;  // 4
};

/// Picks the answer of a search that found at least one valid file. Moving `files` past what was
/// found runs the remaining steps. Null hands the decision to the no-files-found callback.
///
/// Implemented by: the caller.
/// Lifetime: the caller's own; `files` must not be kept or used outside the call.
/// Threads: the thread of the search; several searches may call at once.
/// Failure: none.
class IFilesFoundCallback : public FilesFoundEventGenerator {
 public:
  virtual ObjectPtr<IValidFile> onBinFilesFound(const wchar_t* binFile,
                                                IValidFileIterator& files) = 0;  // 2
  virtual ObjectPtr<IValidFile> onSymFilesFound(const wchar_t* symFile,
                                                const wchar_t* binaryFile,
                                                const wchar_t* checksum,
                                                IValidFileIterator& files) = 0;  // 3
  virtual ObjectPtr<IValidFile> onSrcFilesFound(const wchar_t* srcFile,
                                                const wchar_t* binaryFile,
                                                const wchar_t* checksum,
                                                IValidFileIterator& files) = 0;  // 4
};

/// Asked when no valid file was accepted. Sees every rejected candidate with its reason and every
/// valid one, may validate a path of its own with `validator`, and may return a file. Null means
/// that nothing was found.
///
/// Implemented by: the caller.
/// Lifetime: the caller's own; the arguments must not be kept.
/// Threads: the thread of the search; several searches may call at once.
/// Failure: none.
class INoFilesFoundCallback : public NoFilesFoundEventGenerator {
 public:
  virtual ObjectPtr<IValidFile> onBinNoFilesFound(const wchar_t* binFile,
                                                  IValidator& validator,
                                                  IInvalidFileIterator& invalidFiles,
                                                  IValidFileIterator& validFiles) = 0;  // 2
  virtual ObjectPtr<IValidFile> onSymNoFilesFound(const wchar_t* symFile,
                                                  const wchar_t* binaryFile,
                                                  const wchar_t* checksum,
                                                  IValidator& validator,
                                                  IInvalidFileIterator& invalidFiles,
                                                  IValidFileIterator& validFiles) = 0;  // 3
  virtual ObjectPtr<IValidFile> onSrcNoFilesFound(const wchar_t* srcFile,
                                                  const wchar_t* binaryFile,
                                                  const wchar_t* checksum,
                                                  IValidator& validator,
                                                  IInvalidFileIterator& invalidFiles,
                                                  IValidFileIterator& validFiles) = 0;  // 4
};

/// Ranks a candidate that no check could confirm or reject: true gives it confidence level 2, false
/// level 1.
///
/// Implemented by: the caller.
/// Lifetime: the caller's own.
/// Threads: the thread of the search; several searches may call at once.
/// Failure: none.
class IConfidenceLevelPolicyCallback : public ConfidenceLevelPolicyEventGenerator {
 public:
  /// `step` holds the step number in its low 16 bits, and 1 in its high 16 bits when the candidate
  /// comes from a recursive directory scan: 0x10002 is a hit in a high-priority tree.
  virtual bool decideConfidenceLevel(search_category_t category, int32_t step) = 0;  // 2
};

}  // namespace QV_2_9
