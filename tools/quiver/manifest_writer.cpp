#include "manifest_writer.h"

#include <nlohmann/json.hpp>

#include "manifest_words.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 1;

Json toJson(const ManifestFile& file) {
  Json object{{kPathKey, toUtf8(file.path)}};
  if (file.md5)
    object[kMd5Key] = toUtf8(*file.md5);
  if (file.size)
    object[kSizeKey] = *file.size;
  if (file.time)
    object[kTimeKey] = *file.time;
  return object;
}

Json toJson(const ManifestModule& module) {
  Json object = toJson(module.binary);
  if (module.symbolFile)
    object[kSymbolFileKey] = toJson(*module.symbolFile);
  Json sources = Json::array();
  for (const ManifestFile& source : module.sources) sources.push_back(toJson(source));
  object[kSourcesKey] = std::move(sources);
  return object;
}

}  // namespace

std::string manifestText(const Manifest& manifest) {
  Json document{{kVersionKey, kManifestVersion}};
  if (manifest.osType)
    document[kSystemKey] = wordOfOsType(*manifest.osType);
  Json modules = Json::array();
  for (const ManifestModule& module : manifest.modules) modules.push_back(toJson(module));
  document[kModulesKey] = std::move(modules);
  return document.dump(kIndent) + "\n";
}

}  // namespace quiver_tool
