// The directories of a command line that cannot be searched, for telling their user.

#pragma once

#include <string>
#include <vector>

#include "command_line.h"

namespace quiver_tool {

/// In the order given.
struct UnusableDirectories {
  std::vector<std::wstring> missing;     ///< What is no directory.
  std::vector<std::wstring> unreadable;  ///< Directories that may not be read.

  /// Notes `path` if it is one of these.
  void note(const std::wstring& path);
};

/// Returns those that were given for one of these kinds.
UnusableDirectories unusableDirectories(const SearchPlaces& places,
                                        const std::vector<QV_2_9::search_category_t>& categories);

}  // namespace quiver_tool
