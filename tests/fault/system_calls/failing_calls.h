// Which errors a system call may meet with in practice. Plain functions: the seam asks them in the
// middle of a call.

#pragma once

#include <cstdint>
#include <span>

#include "fault/system_calls/system_call_seam.h"

namespace quiver_test {

/// Returns the errors, and `kShort`, that are worth trying for a call with this number; none for a
/// call that is never failed.
std::span<const std::int32_t> errorsOf(std::int32_t number);

/// Returns whether this error may be the answer to this call.
bool fits(const NotedCall& call, std::int32_t error);

bool isRemoval(std::int32_t number);
bool isTransfer(std::int32_t number);

/// Returns whether the error, once met, is met again by later calls: a full disk, no more
/// descriptors, a device that is gone.
bool mayLast(std::int32_t error);

/// Returns whether code that does all it should comes to the same answer in spite of it.
bool isToBeOvercome(std::int32_t error);

/// Returns the call's name, or its number.
const char* nameOf(std::int32_t number);

}  // namespace quiver_test
