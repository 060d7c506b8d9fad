// What the locks ask of the system besides its lock object.

#pragma once

namespace QV_2_9::internal {

/// Waits 10 milliseconds: the pause between two attempts at a lock that is polled.
void sleepBetweenAttempts();

}  // namespace QV_2_9::internal
