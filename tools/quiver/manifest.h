// What a result records: its modules, and of each the symbol file and the sources. The JSON form is
// described in docs/manifest.md.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quiver_tool {

inline constexpr std::int64_t kManifestVersion = 1;

/// A file as it was when the result was made.
struct ManifestFile {
  std::wstring path;                 ///< Of the recording machine, in its style. Never empty.
  std::optional<std::wstring> md5;   ///< 32 hexadecimal digits.
  std::optional<std::int64_t> size;  ///< Bytes.
  std::optional<std::int64_t> time;  ///< Of the last change: seconds since 1970, UTC.
};

struct ManifestModule {
  ManifestFile binary;
  std::optional<ManifestFile> symbolFile;
  std::vector<ManifestFile> sources;
};

struct Manifest {
  std::optional<std::int32_t> osType;  ///< Of the analysed system, as the library numbers them.
  std::vector<ManifestModule> modules;
};

}  // namespace quiver_tool
