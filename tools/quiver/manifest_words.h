// The words of a manifest's JSON form, for its reader and its writer.

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quiver_tool {

inline constexpr const char* kVersionKey = "version";
inline constexpr const char* kSystemKey = "operating_system";
inline constexpr const char* kModulesKey = "modules";
inline constexpr const char* kSymbolFileKey = "symbol_file";
inline constexpr const char* kSourcesKey = "sources";
inline constexpr const char* kPathKey = "path";
inline constexpr const char* kMd5Key = "md5";
inline constexpr const char* kSizeKey = "size";
inline constexpr const char* kTimeKey = "time";

/// Systems as the library numbers them.
inline constexpr std::int32_t kSystemWindows = 1;
inline constexpr std::int32_t kSystemOther = 2;

inline std::optional<std::int32_t> osTypeOfWord(std::string_view word) {
  if (word == "windows")
    return kSystemWindows;
  return word == "other" ? std::optional(kSystemOther) : std::nullopt;
}

inline const char* wordOfOsType(std::int32_t osType) {
  return osType == kSystemWindows ? "windows" : "other";
}

}  // namespace quiver_tool
