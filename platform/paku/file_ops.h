// Operations on files as wholes. They return 0 or a system error code.

#pragma once

#include <cstdint>

#include "paku/file_state.h"
#include "paku/filename.h"

namespace PAKU_3_1 {

/// Copies a regular file with its modification time. The target appears complete or not at all: the
/// content is gathered under another name in the target's directory and renamed at the end, and a
/// failure leaves nothing behind. Without `overwrite` an existing target is an error.
///
/// With `expected`, `kFileHasChanged` is returned unless the file was in that state all the time.
int copyFile(const Filename& from,
             const Filename& to,
             bool overwrite,
             const FileState* expected = nullptr);

/// No error code of any system.
inline constexpr int kFileHasChanged = -1;

/// In seconds.
inline constexpr std::int64_t kCopyIsAbandonedAfter = 24 * 60 * 60;

/// Removes what is left beside `target` of copies whose process was killed: files under the names
/// that `copyFile` gathers content under, when nothing has touched them for so long at `now`,
/// seconds since 1970-01-01 UTC. What cannot be removed stays.
void removeAbandonedCopies(const Filename& target, std::int64_t now);

/// Creates one directory below an existing one. A directory that is there already is a success.
int createDirectory(const Filename& directory);

}  // namespace PAKU_3_1
