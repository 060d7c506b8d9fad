// What a search finds: valid files, rejected candidates with a reason each, and the iterators that
// callbacks walk them with.

#pragma once

#include <stdint.h>

#include "quiver/object.h"

namespace QV_2_9 {

/// The steps of a search, in the order in which they run.
enum search_step_t : int32_t {
  ssArchiveSearchDirs = 1,       ///< Earlier copies in the archive search directories.
  ssHighPrioritySearchDirs = 2,  ///< High-priority search directories.
  ssAbsoluteNameLookup = 3,      ///< The recorded name itself, as a path.
  ssSystemDirs = 4,              ///< The operating system's directories and the symbol path.
  ssAroundBinaryLookup = 5,      ///< Beside the binary and in the directories above it.
  ssLowPrioritySearchDirs = 6,   ///< Low-priority search directories.
};

/// The step of a suggested resolution, and of a path that a callback had validated.
inline constexpr int32_t kSuggestedResolutionStep = 7;

/// A file that passed every test.
///
/// Implemented by: the library; a callback may return one of its own.
/// Lifetime: counted; survives the search.
/// Threads: under the caller's own locking.
/// Failure: none.
class IValidFile : public IQVObject {
 public:
  /// Returns the canonical absolute path. Never null; valid while the object lives.
  virtual const wchar_t* getPath() = 0;  // 4
  /// Returns 0 when a check confirmed the file; 1 or 2 when none contradicted it and the
  /// confidence-level policy answered false or true.
  virtual int32_t getConfidenceLevel() = 0;  // 5
  /// Returns the step that found it: a `search_step_t`, or `kSuggestedResolutionStep`.
  virtual int32_t getStep() = 0;  // 6
};

/// A candidate that exists and was rejected.
///
/// Implemented by: the library.
/// Lifetime: counted; survives the search.
/// Threads: under the caller's own locking.
/// Failure: none.
class IInvalidFile : public IQVObject {
 public:
  /// Returns the canonical absolute path. Never null; valid while the object lives.
  virtual const wchar_t* getPath() = 0;  // 4
  /// Returns an `invalid_file_error_t` (validation.h), or what the caller's check set.
  virtual int32_t getErrorCode() = 0;  // 5
  /// Returns the reason: a message-catalogue key such as "%FileIsDirectory", or the text of the
  /// caller's message object. Empty when a check gave none; never null.
  virtual const wchar_t* getErrorMessage() = 0;  // 6
  /// Returns the step that offered it, as for a valid file.
  virtual int32_t getStep() = 0;  // 7
  /// Returns a new valid file with the same path and step and confidence level 0: the way to accept
  /// a rejected candidate anyway. This object stays as it is.
  virtual ObjectPtr<IValidFile> makeValid() = 0;  // 8
};

/// The verdict on one candidate: exactly one of the two files is set.
///
/// Implemented by: the library.
/// Lifetime: counted.
/// Threads: under the caller's own locking.
/// Failure: none.
class IValidatedFile : public IQVObject {
 public:
  /// Returns null when the candidate was rejected.
  virtual ObjectPtr<IValidFile> getValidFile() = 0;  // 4
  /// Returns null when the candidate was accepted.
  virtual ObjectPtr<IInvalidFile> getInvalidFile() = 0;  // 5
};

/// Walks the valid files of a search.
///
/// The one given to a files-found callback runs the remaining search steps as it is moved past the
/// files found so far; the one given to a no-files-found callback only shows what is there.
///
/// Implemented by: the library.
/// Lifetime: borrowed for the call.
/// Threads: the thread of the search.
/// Failure: null at the end.
class IValidFileIterator {
 public:
  /// Goes back to the first file; no step runs again.
  virtual void reset() = 0;  // 0
  /// Returns the current file and goes on. Null at the end.
  virtual ObjectPtr<IValidFile> next() = 0;  // 1

 protected:
  ~IValidFileIterator() = default;
};

/// Walks the rejected candidates of a search. Never runs a step.
///
/// Implemented by: the library.
/// Lifetime: borrowed for the call.
/// Threads: the thread of the search.
/// Failure: null at the end.
class IInvalidFileIterator {
 public:
  /// Goes back to the first file.
  virtual void reset() = 0;  // 0
  /// Returns the current file and goes on. Null at the end.
  virtual ObjectPtr<IInvalidFile> next() = 0;  // 1

 protected:
  ~IInvalidFileIterator() = default;
};

}  // namespace QV_2_9
