// The places of a command line as the library takes them.

#pragma once

#include <string>
#include <vector>

#include "command_line.h"
#include "quiver/environment_info.h"
#include "quiver/search_dirs.h"

namespace quiver_tool {

/// Leaves symbol servers out when none is to be asked.
QV_2_9::ObjectPtr<QV_2_9::IEditableSearchDirContainer> searchDirs(const SearchPlaces& places);

/// Files every archive under each of these kinds.
QV_2_9::ObjectPtr<QV_2_9::IEditableSearchDirContainer> archiveDirs(
    const SearchPlaces& places, const std::vector<QV_2_9::search_category_t>& categories);

/// Null when nothing is known of the analysed system.
QV_2_9::ObjectPtr<QV_2_9::IEnvironmentInfo> environmentInfo(const SearchPlaces& places);

/// Returns a binary of this machine in full, so that all directories above it count: the library
/// takes them from its name alone. A recorded name is left as it is.
std::wstring binaryName(const std::wstring& binary);

}  // namespace quiver_tool
