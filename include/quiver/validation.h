// The caller's own check of a candidate, and what a candidate is rejected with.
//
// Before the caller's check runs, a candidate must exist, not be a directory, and be readable.

#pragma once

#include <stdint.h>

#include "quiver/object.h"

namespace QV_2_9 {

class IValidatedFile;

/// Answer of a check. Any other value counts as undecided.
enum validation_result_t : int32_t {
  vrValid = 0,      ///< The check confirms the candidate.
  vrInvalid = 1,    ///< The check rejects it; the error information has been filled.
  vrUndecided = 2,  ///< Nothing to compare with; the confidence-level policy ranks the candidate.
};

/// Why a candidate was rejected.
enum invalid_file_error_t : int32_t {
  ecUnusable = 0,  ///< Missing, a directory, unreadable, or a binary or symbol file that differs.
  ecSourceMismatch =
      1,         ///< A source file that differs from what was recorded; it may still be shown.
  ecNotSet = 2,  ///< A check rejected the candidate without saying why.
};

/// Where a check writes its reason.
///
/// Implemented by: the library.
/// Lifetime: borrowed for the call.
/// Threads: the thread of the search.
/// Failure: none.
class IErrorInfoContainer {
 public:
  /// Starts as `ecNotSet`.
  virtual void setErrorCode(int32_t code) = 0;  // 0
  /// Copies `text`; null keeps the previous text.
  virtual void setErrorMessage(const wchar_t* text) = 0;  // 1

 protected:
  ~IErrorInfoContainer() = default;
};

/// A caller's check. `ChecksumValidator` (checksum.h) is one that the library brings.
///
/// Implemented by: the caller.
/// Lifetime: borrowed for the `find*File` call it is given to.
/// Threads: the thread of the search.
/// Failure: answer `vrUndecided` when the check cannot be made.
class IValidatorCallback {
 public:
  /// `path` is the candidate as it was found; it exists and is a readable regular file.
  virtual validation_result_t validate(const wchar_t* path,
                                       IErrorInfoContainer& errorInfo) = 0;  // 0

 protected:
  ~IValidatorCallback() = default;
};

/// The whole validation of the running search, for callbacks that bring a path of their own.
///
/// Implemented by: the library.
/// Lifetime: borrowed for the call.
/// Threads: the thread of the search.
/// Failure: a path that cannot be used comes back as an invalid file.
class IValidator {
 public:
  /// Returns the verdict, filed under `kSuggestedResolutionStep`. A null path is an empty one.
  virtual ObjectPtr<IValidatedFile> validate(const wchar_t* path) = 0;  // 0

 protected:
  ~IValidator() = default;
};

}  // namespace QV_2_9
