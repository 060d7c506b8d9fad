// Checks of source files that look at time and size instead of the content.
//
// Modification times are whole seconds since 1970-01-01 UTC. Sizes are compared as recorders write
// them: the low 32 bits, read as a signed number, so a file of 3 GiB has the size -1073741824.

#pragma once

#include <stdint.h>

#include "quiver/export.h"
#include "quiver/messages.h"
#include "quiver/object.h"
#include "quiver/validation.h"

namespace QV_2_9 {

#if defined(__GNUC__)
// The checks have no place for a destructor among their operations: they are never deleted through
// a base.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// Accepts a source file whose modification time and size are the recorded ones.
///
/// A plain object of the caller's. The time is compared first; a file that differs is rejected with
/// `ecSourceMismatch`. With neither value recorded every file stays undecided. Derive to write
/// other texts.
class QV_API SourceFileTimeAndSizeMatchValidator : public IValidatorCallback {
 public:
  /// 0 means that the value was not recorded; it is then not compared.
  SourceFileTimeAndSizeMatchValidator(int64_t modificationTime, int64_t size);

  validation_result_t validate(const wchar_t* path, IErrorInfoContainer& errorInfo) override;  // 0

 protected:
  // Each writes the text of a mismatch: by default what the registered message formats.
  virtual void fillTimeMismatchErrorMessage(IModificationTimeMismatchMessage& message,
                                            IMsgContainer& container);  // 1
  virtual void fillSizeMismatchErrorMessage(ISizeMismatchMessage& message,
                                            IMsgContainer& container);  // 2

 private:
  validation_result_t rejectForTime(IErrorInfoContainer& errorInfo);
  validation_result_t rejectForSize(IErrorInfoContainer& errorInfo);

  int64_t m_modificationTime;
  int64_t m_size;
  ObjectPtr<IModificationTimeMismatchMessage> m_timeMessage;
  ObjectPtr<ISizeMismatchMessage> m_sizeMessage;
};

/// Rejects a source file that is newer than a reference file, usually the binary built from it.
///
/// A plain object of the caller's. It never confirms: a file that is old enough stays undecided,
/// and so does every file when the reference cannot be examined. Derive to write another text.
class QV_API SourceFileUpToDateCheckValidator : public IValidatorCallback {
 public:
  /// Examines the reference file now, and never again.
  explicit SourceFileUpToDateCheckValidator(const wchar_t* referencePath);

  validation_result_t validate(const wchar_t* path, IErrorInfoContainer& errorInfo) override;  // 0

 protected:
  /// Writes the text of a rejection: by default what the registered message formats.
  virtual void fillUpToDateErrorMessage(ISourceFileUpToDateMessage& message,
                                        IMsgContainer& container);  // 1

 private:
  int64_t m_referenceTime;
  ObjectPtr<ISourceFileUpToDateMessage> m_message;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace QV_2_9
