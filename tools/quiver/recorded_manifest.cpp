#include "recorded_manifest.h"

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "text_encoding.h"

namespace quiver_tool {
namespace {

using Json = nlohmann::json;

std::string bytesOf(const std::wstring& path) {
  std::ifstream file(toNativePath(path), std::ios::binary);
  if (!file)
    throw std::runtime_error("cannot be opened");
  std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (file.bad())
    throw std::runtime_error("cannot be read");
  return bytes;
}

RecordedFile toFile(const Json& object, QV_2_9::search_category_t category) {
  RecordedFile file;
  file.category = category;
  file.name = toWide(object.at("path").get<std::string>());
  if (object.contains("md5"))
    file.md5 = toWide(object["md5"].get<std::string>());
  if (object.contains("size"))
    file.size = object["size"].get<std::int64_t>();
  if (object.contains("time"))
    file.modificationTime = object["time"].get<std::int64_t>();
  return file;
}

RecordedManifest toManifest(const Json& document) {
  RecordedManifest manifest;
  for (const Json& module : document.at("modules")) {
    const std::size_t binary = manifest.files.size();
    manifest.files.push_back(toFile(module, QV_2_9::scBinaryFiles));
    const std::wstring name = manifest.files.back().name;
    const auto add = [&](const Json& object, QV_2_9::search_category_t category) {
      manifest.files.push_back(toFile(object, category));
      manifest.files.back().module = name;
      manifest.files.back().binary = binary;
    };
    if (module.contains("symbol_file"))
      add(module["symbol_file"], QV_2_9::scSymbolFiles);
    if (module.contains("sources"))
      for (const Json& source : module["sources"]) add(source, QV_2_9::scSourceFiles);
  }
  return manifest;
}

// Without the library's own name for it, which stands in brackets.
std::string complaintOf(const Json::exception& error) {
  const std::string text = error.what();
  const std::size_t end = text.find("] ");
  return end == std::string::npos ? text : text.substr(end + 2);
}

}  // namespace

RecordedManifest readRecordedManifest(const std::wstring& path) {
  const std::string bytes = bytesOf(path);
  try {
    return toManifest(Json::parse(bytes));
  } catch (const Json::exception& error) {
    throw std::runtime_error(complaintOf(error));
  }
}

}  // namespace quiver_tool
