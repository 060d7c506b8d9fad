#include "manifest_reader.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <system_error>

#include "json_locator.h"
#include "manifest_words.h"
#include "manifest_writer.h"
#include "system_error_text.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostPathBytes = 32767;
constexpr std::size_t kMd5Digits = 32;
constexpr std::size_t kMostPointerBytes = 200;

/// What is wrong with the value at a pointer.
struct BadValue {
  std::string pointer;
  std::string reason;
};

[[noreturn]] void refuse(const std::string& pointer, const std::string& reason) {
  throw BadValue{pointer, reason};
}

const Json* member(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found == object.end() ? nullptr : &*found;
}

void requireObject(const Json& value, const std::string& pointer, const char* what) {
  if (!value.is_object())
    refuse(pointer, std::string(what) + " is an object, not " + value.type_name());
}

const Json* arrayIn(const Json& object, const std::string& pointer, const char* key) {
  const Json* array = member(object, key);
  if (array && !array->is_array())
    refuse(pointerTo(pointer, key), std::string("an array is needed, not ") + array->type_name());
  return array;
}

const std::string* textIn(const Json& object, const std::string& pointer, const char* key) {
  const Json* value = member(object, key);
  if (!value)
    return nullptr;
  if (!value->is_string())
    refuse(pointerTo(pointer, key), std::string("a text is needed, not ") + value->type_name());
  return value->get_ptr<const std::string*>();
}

std::optional<std::int64_t> integerIn(const Json& object,
                                      const std::string& pointer,
                                      const char* key,
                                      std::int64_t least) {
  const Json* value = member(object, key);
  if (!value)
    return std::nullopt;
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  const bool isInRange = value->is_number_unsigned()
                             ? value->get<std::uint64_t>() <= std::uint64_t{kMost}
                             : value->is_number_integer() && value->get<std::int64_t>() >= least;
  if (!isInRange)
    refuse(pointerTo(pointer, key),
           "a whole number from " + std::to_string(least) + " to " + std::to_string(kMost) +
               " is needed");
  return value->get<std::int64_t>();
}

std::wstring pathIn(const Json& object, const std::string& pointer) {
  const std::string* path = textIn(object, pointer, kPathKey);
  if (!path)
    refuse(pointer, "\"path\" is missing");
  const std::string at = pointerTo(pointer, kPathKey);
  if (path->empty())
    refuse(at, "a path is not empty");
  if (path->size() > kMostPathBytes)
    refuse(at, "a path has at most " + std::to_string(kMostPathBytes) + " bytes");
  if (path->find('\0') != std::string::npos)
    refuse(at, "a path holds no NUL");
  return toWide(*path);
}

std::optional<std::wstring> md5In(const Json& object, const std::string& pointer) {
  const std::string* md5 = textIn(object, pointer, kMd5Key);
  if (!md5)
    return std::nullopt;
  if (md5->size() != kMd5Digits ||
      md5->find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
    refuse(pointerTo(pointer, kMd5Key), "an MD5 has 32 hexadecimal digits");
  return toWide(*md5);
}

ManifestFile toFile(const Json& object, const std::string& pointer) {
  requireObject(object, pointer, "a file");
  return {pathIn(object, pointer),
          md5In(object, pointer),
          integerIn(object, pointer, kSizeKey, 0),
          integerIn(object, pointer, kTimeKey, std::numeric_limits<std::int64_t>::min())};
}

ManifestModule toModule(const Json& object, const std::string& pointer) {
  ManifestModule module{toFile(object, pointer), std::nullopt, {}};
  if (const Json* symbolFile = member(object, kSymbolFileKey))
    module.symbolFile = toFile(*symbolFile, pointerTo(pointer, kSymbolFileKey));
  const Json* sources = arrayIn(object, pointer, kSourcesKey);
  if (!sources)
    return module;
  const std::string array = pointerTo(pointer, kSourcesKey);
  for (std::size_t i = 0; i < sources->size(); ++i)
    module.sources.push_back(toFile((*sources)[i], pointerTo(array, std::to_string(i))));
  return module;
}

void takeHead(const Json& document, Manifest& manifest) {
  requireObject(document, "", "a manifest");
  const auto version = integerIn(document, "", kVersionKey, 1);
  if (version && *version != kManifestVersion)
    refuse(pointerTo("", kVersionKey), "this program reads version 1 only");
  const std::string* system = textIn(document, "", kSystemKey);
  if (!system)
    return;
  manifest.osType = osTypeOfWord(*system);
  if (!manifest.osType)
    refuse(pointerTo("", kSystemKey), "either \"windows\" or \"other\" is needed");
}

Manifest toManifest(const Json& document) {
  Manifest manifest;
  takeHead(document, manifest);
  const Json* modules = arrayIn(document, "", kModulesKey);
  if (!modules)
    refuse("", "\"modules\" is missing");
  const std::string array = pointerTo("", kModulesKey);
  std::map<std::wstring, std::size_t> known;
  for (std::size_t i = 0; i < modules->size(); ++i) {
    const std::string pointer = pointerTo(array, std::to_string(i));
    manifest.modules.push_back(toModule((*modules)[i], pointer));
    const auto [first, isNew] = known.emplace(manifest.modules.back().binary.path, i);
    if (!isNew)
      refuse(pointerTo(pointer, kPathKey),
             "this module is there already, as " + pointerTo(array, std::to_string(first->second)));
  }
  return manifest;
}

std::string complaint(std::string_view text,
                      std::size_t offset,
                      const std::string& pointer,
                      const std::string& reason) {
  const std::string shown =
      pointer.size() <= kMostPointerBytes ? pointer : pointer.substr(0, kMostPointerBytes) + "...";
  const std::string where = shown.empty() ? "" : " (" + shown + ")";
  return escapeControls(lineAndColumn(text, offset) + where + ": " + reason);
}

void refuseTooMany(std::uintmax_t bytes) {
  if (bytes > kMostManifestBytes)
    throw ManifestError("it has " + std::to_string(bytes) + " bytes; a manifest has at most " +
                        std::to_string(kMostManifestBytes));
}

}  // namespace

Manifest parseManifest(std::string_view text) {
  refuseTooMany(text.size());
  if (const std::optional<JsonFault> fault = findSyntaxFault(text))
    throw ManifestError(complaint(text, fault->offset, fault->pointer, fault->reason));
  try {
    return toManifest(Json::parse(text));
  } catch (const BadValue& bad) {
    throw ManifestError(complaint(text, offsetOfValue(text, bad.pointer), bad.pointer, bad.reason));
  }
}

Manifest readManifest(const std::wstring& path) {
  const std::filesystem::path native = toNativePath(path);
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(native, error);
  std::error_code ignored;
  if (error && std::filesystem::exists(native, ignored))
    throw ManifestError("it is no regular file");  // opening a pipe would wait for its writer
  if (error)
    throw ManifestError("it cannot be opened: " + error.message());
  std::ifstream file(native, std::ios::binary);
  if (!file)
    throw ManifestError("it cannot be opened: " + systemErrorText());
  refuseTooMany(size);
  std::string text(static_cast<std::size_t>(size), '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (file.bad())
    throw ManifestError("it cannot be read");
  text.resize(static_cast<std::size_t>(file.gcount()));
  return parseManifest(text);
}

int fuzzManifest(std::string_view text) {
  Manifest manifest;
  try {
    manifest = parseManifest(text);
  } catch (const ManifestError&) {
    return 0;
  }
  const std::string written = manifestText(manifest);
  if (manifestText(parseManifest(written)) != written)
    std::abort();
  return 0;
}

}  // namespace quiver_tool
