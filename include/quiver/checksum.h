// Checksums of files, and the check that compares a candidate's with a recorded one.

#pragma once

#include <stdint.h>

#include "quiver/export.h"
#include "quiver/messages.h"
#include "quiver/object.h"
#include "quiver/search_dirs.h"
#include "quiver/validation.h"

namespace QV_2_9 {

/// Kinds of checksum.
enum checksum_type_t : int32_t {
  ctMD5 = 0,  ///< MD5 of the file's content: 32 hexadecimal digits.
};

/// A checksum value; never changes.
///
/// Implemented by: the library.
/// Lifetime: counted.
/// Threads: reading from any; references under the caller's own locking.
/// Failure: none.
class IChecksum : public IQVObject {
 public:
  /// Returns the type, as given when the value was made.
  virtual int32_t getType() = 0;  // 4
  /// Returns the text. Never null; valid while the object lives.
  virtual const wchar_t* getValue() = 0;  // 5
  /// Returns true when types are equal and texts are equal ignoring case.
  virtual bool isEqual(IChecksum& other) = 0;  // 6
};

/// Makes checksums from files and from recorded texts.
///
/// Implemented by: the library.
/// Lifetime: counted, one object per process; the last reference ends it.
/// Threads: calculating on any thread; references, `create` included, one thread at a time.
/// Failure: null.
class IChecksumCalculator : public IQVObject {
 public:
  /// Returns the checksum of the file's content. Null when the file cannot be read as a regular
  /// file or the type is not `ctMD5`.
  virtual ObjectPtr<IChecksum> calculate(const wchar_t* path, int32_t type) = 0;  // 4
  /// Returns a checksum with a copy of `value`, unchanged. Null when `value` is null.
  virtual ObjectPtr<IChecksum> createChecksum(int32_t type, const wchar_t* value) = 0;  // 5

  /// Returns the one calculator, making it when there is none.
  QV_API static ObjectPtr<IChecksumCalculator> create();
};

#if defined(__GNUC__)
// The check has no place for a destructor among its operations: it is never deleted through a base.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// Accepts a candidate only when its checksum equals the expected one.
///
/// A plain object of the caller's, usually on its stack. A checksum that cannot be computed leaves
/// the candidate undecided; only one that differs rejects it, a source file with
/// `ecSourceMismatch`, a binary or symbol file with `ecUnusable`. Derive to write other texts.
///
/// Made and destroyed by one thread at a time, since it counts a reference to the one calculator;
/// `validate` runs on any thread.
class QV_API ChecksumValidator : public IValidatorCallback {
 public:
  /// `category` says which message and code a mismatch gets (a `search_category_t`). A null
  /// `expected` leaves every file undecided.
  ChecksumValidator(int32_t category, const ObjectPtr<IChecksum>& expected);

  validation_result_t validate(const wchar_t* path, IErrorInfoContainer& errorInfo) override;  // 0

 protected:
  // Each writes the text of a mismatch: by default what the registered message formats.
  virtual void fillErrorMessageForBinFile(IBinChecksumMismatchMessage& message,
                                          IMsgContainer& container);  // 1
  virtual void fillErrorMessageForSymFile(ISymChecksumMismatchMessage& message,
                                          IMsgContainer& container);  // 2
  virtual void fillErrorMessageForSrcFile(ISrcChecksumMismatchMessage& message,
                                          IMsgContainer& container);  // 3

 private:
  void fillChecksumErrorInfo(IErrorInfoContainer& errorInfo);

  ObjectPtr<IChecksumCalculator> m_calculator;
  int32_t m_category;
  ObjectPtr<IChecksum> m_expected;
  ObjectPtr<IBinChecksumMismatchMessage> m_binMessage;
  ObjectPtr<ISymChecksumMismatchMessage> m_symMessage;
  ObjectPtr<ISrcChecksumMismatchMessage> m_srcMessage;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace QV_2_9
