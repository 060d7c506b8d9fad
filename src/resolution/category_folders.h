// The folder that each file category has in a result directory and in its archive.

#pragma once

#include <cstdint>

#include "quiver/search_dirs.h"

namespace QV_2_9::internal {

struct CategoryFolder {
  search_category_t category;
  const wchar_t* name;
};

inline constexpr CategoryFolder kCategoryFolders[] = {
    {scBinaryFiles, L"binaries"},
    {scSymbolFiles, L"symbols"},
    {scSourceFiles, L"sources"},
    {scAllFiles, L"all"},
};

inline constexpr const wchar_t* kArchiveFolder = L"archive";

/// Returns the folder of `scAllFiles` for a value that is no category.
constexpr const wchar_t* categoryFolder(std::int32_t category) {
  for (const CategoryFolder& row : kCategoryFolders) {
    if (row.category == category)
      return row.name;
  }
  return categoryFolder(scAllFiles);
}

}  // namespace QV_2_9::internal
