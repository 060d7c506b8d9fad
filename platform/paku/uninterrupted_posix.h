// System calls that a signal may break off before they did anything.

#pragma once

#include <cerrno>

namespace PAKU_3_1::internal {

/// Makes the call, which answers -1 and `errno`, until no signal breaks it off. A program that
/// handles signals, as those with timers do, must find no less than others. Not for `close`, which
/// is done then all the same.
template <class Call>
auto uninterrupted(const Call& call) {
  for (;;) {
    const auto result = call();
    if (result != -1 || errno != EINTR)
      return result;
  }
}

}  // namespace PAKU_3_1::internal
