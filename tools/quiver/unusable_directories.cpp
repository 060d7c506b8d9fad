#include "unusable_directories.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "symbol_servers.h"
#include "text_encoding.h"

namespace quiver_tool {

void UnusableDirectories::note(const std::wstring& path) {
  const std::filesystem::path native = toNativePath(path);
  std::error_code error;
  if (!std::filesystem::is_directory(native, error))
    return missing.push_back(path);
  const std::filesystem::directory_iterator entries(native, error);
  if (error)
    unreadable.push_back(path);
}

UnusableDirectories unusableDirectories(const SearchPlaces& places,
                                        const std::vector<QV_2_9::search_category_t>& categories) {
  const auto isUsed = [&categories](const SearchDirectory& dir) {
    return std::ranges::any_of(categories, [&dir](auto category) { return serves(dir, category); });
  };
  UnusableDirectories unusable;
  for (const std::wstring& path : places.results) unusable.note(path);
  for (const std::wstring& path : places.archives) unusable.note(path);
  for (const SearchDirectory& dir : places.directories) {
    if (isUsed(dir) && !isSymbolServer(dir.path))
      unusable.note(dir.path);
  }
  if (places.symbolPath && std::ranges::count(categories, QV_2_9::scSymbolFiles) > 0)
    for (const std::wstring& path : directoriesOf(*places.symbolPath)) unusable.note(path);
  return unusable;
}

}  // namespace quiver_tool
