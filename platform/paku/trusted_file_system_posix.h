// Where the kernel's notifications tell of every change.

#pragma once

namespace PAKU_3_1::internal {

/// Returns true for a directory on a file system of this machine whose changes are all notified.
/// Network file systems, those of user processes and unknown ones are none of these.
bool notifiesOfChanges(int directory);

/// Returns true when something may be mounted below the directory.
bool hasMountBelow(int directory);

/// Returns true when names in the directory are compared without letter case.
bool ignoresCase(int directory);

}  // namespace PAKU_3_1::internal
