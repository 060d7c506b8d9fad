// What lies in the archive of a result directory:
//
//   DIR/archive/<kind>/<file name>/<MD5 of the content>/<file name>
//
// Links are never followed and special files never opened.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "quiver/search_dirs.h"

namespace quiver_tool {

enum class CopyState {
  Agrees,      ///< The content is what the folder's name says.
  Differs,     ///< A copy with other content.
  Unreadable,  ///< A copy or a folder, or what cannot even be examined.
  Foreign,     ///< Something that the layout has no place for, for example half a copy.
};

struct ArchiveEntry {
  std::wstring path;  ///< Below DIR, with '/' between the parts.
  std::wstring name;
  std::optional<QV_2_9::search_category_t> category;
  std::wstring folderMd5;
  std::wstring md5;                    ///< Of the content; empty when it was not read.
  std::optional<std::uintmax_t> size;  ///< Of a regular file.
  CopyState state = CopyState::Foreign;
};

/// Returns the entries sorted by path, folder by folder; none when there is no archive. What stands
/// below a foreign folder is not looked at.
std::vector<ArchiveEntry> listArchive(const std::wstring& resultDirectory);

}  // namespace quiver_tool
