// Copies of resolved files, kept in a directory under their content's checksum:
//
//   archive directory / category folder / file name / MD5 text / file name
//
// Versions of one file lie side by side, and no version is copied twice. The archive step of later
// searches finds them there.

#pragma once

#include <cstdint>

#include "quiver/resolution_context.h"

namespace QV_2_9::internal {

/// Copies `file` into the archive in `archiveDir`. The folders down to the file name are made
/// before the file is looked at; whatever fails, folders that were made stay. A file that changes
/// between its checksum and the end of the copy is begun with once more, and then given up. What
/// processes that were killed have left of this version a day or more before `now`, in seconds
/// since 1970, goes.
archive_result_t archiveInto(const wchar_t* archiveDir,
                             const wchar_t* file,
                             std::int32_t category,
                             std::int64_t now);

}  // namespace QV_2_9::internal
