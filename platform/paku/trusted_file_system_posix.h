// Where the kernel's notifications tell of every change, and where a file's times do.

#pragma once

namespace PAKU_3_1::internal {

/// Returns true for a directory on a file system of this machine whose changes are all notified.
/// Network file systems, those of user processes and unknown ones are none of these.
bool notifiesOfChanges(int directory);

/// Returns true for a file whose second time moves whenever its content changes, be it through a
/// mapping. In memory that is not so, and an overlay may lie above memory; over a network, or from
/// a program, times may be old ones.
bool datesAllContent(int file);

/// Returns true when something may be mounted below the directory.
bool hasMountBelow(int directory);

/// Returns true when names in the directory are compared without letter case.
bool ignoresCase(int directory);

}  // namespace PAKU_3_1::internal
