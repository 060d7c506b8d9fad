#include "search_scope.h"

#include <filesystem>
#include <system_error>

#include "symbol_servers.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

using QV_2_9::IEditableEnvironmentInfo;
using QV_2_9::IEditableSearchDirContainer;
using QV_2_9::IEnvironmentInfo;
using QV_2_9::ObjectPtr;
using QV_2_9::search_category_t;
using Categories = std::vector<search_category_t>;

}  // namespace

ObjectPtr<IEditableSearchDirContainer> searchDirs(const SearchPlaces& places) {
  ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  for (const SearchDirectory& dir : places.directories) {
    if (places.isWithoutServers && isSymbolServer(dir.path))
      continue;
    dirs->addSearchDir(dir.category, dir.path.c_str(), dir.isRecursive, dir.isHighPriority);
  }
  return dirs;
}

ObjectPtr<IEditableSearchDirContainer> archiveDirs(const SearchPlaces& places,
                                                   const Categories& categories) {
  ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  for (const search_category_t category : categories) {
    for (const std::wstring& path : places.archives)
      dirs->addSearchDir(category, path.c_str(), true, true);
  }
  return dirs;
}

ObjectPtr<IEnvironmentInfo> environmentInfo(const SearchPlaces& places) {
  if (!places.osType)
    return nullptr;
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  info->setOSType(*places.osType);
  return info;
}

std::wstring binaryName(const std::wstring& binary) {
  std::error_code error;
  if (!std::filesystem::exists(toNativePath(binary), error))
    return binary;
  const std::filesystem::path path = std::filesystem::absolute(toNativePath(binary), error);
  return error ? binary : fromNativePath(path);
}

}  // namespace quiver_tool
