#include "recorded_manifest.h"

#include <optional>
#include <string>

#include "manifest_reader.h"

namespace quiver_tool {
namespace {

RecordedFile toFile(const ManifestFile& file, QV_2_9::search_category_t category) {
  RecordedFile recorded;
  recorded.category = category;
  recorded.name = file.path;
  recorded.md5 = file.md5;
  recorded.size = file.size;
  recorded.modificationTime = file.time;
  return recorded;
}

}  // namespace

RecordedManifest readRecordedManifest(const std::wstring& path) {
  const Manifest manifest = readManifest(path);
  RecordedManifest recorded{manifest.osType, {}};
  for (const ManifestModule& module : manifest.modules) {
    const std::size_t binary = recorded.files.size();
    recorded.files.push_back(toFile(module.binary, QV_2_9::scBinaryFiles));
    const auto add = [&](const ManifestFile& file, QV_2_9::search_category_t category) {
      recorded.files.push_back(toFile(file, category));
      recorded.files.back().module = module.binary.path;
      recorded.files.back().binary = binary;
    };
    if (module.symbolFile)
      add(*module.symbolFile, QV_2_9::scSymbolFiles);
    for (const ManifestFile& source : module.sources) add(source, QV_2_9::scSourceFiles);
  }
  return recorded;
}

}  // namespace quiver_tool
