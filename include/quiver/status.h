// Status codes and their texts.

#pragma once

#include <stdint.h>

#include "quiver/export.h"

namespace QV_2_9 {

/// Outcome of an operation. Plain success is 1 and success with a logical false is 0, so a status
/// can be tested like a truth value; every failure is negative.
enum status_t : int32_t {
  stSuccess = 1,           ///< Done; the answer, if any, is "true".
  stFalse = 0,             ///< Done; the answer is "false".
  stError = -1,            ///< Failed for a reason that has no code of its own.
  stInvalidArgument = -2,  ///< An argument is outside what the operation accepts.
  stNotFound = -3,         ///< The element is not there.
  stAlreadyExists = -4,    ///< The element is there already.
  stNotImplemented = -5,   ///< The operation exists in the interface only.
  stOutOfMemory = -6,      ///< Memory ran out.
};

/// Returns the English text of `status`, "Incorrect status code" for a value that is none of the
/// enumerators. Never null; the text is static.
QV_API const char* statusToString(status_t status);

}  // namespace QV_2_9
