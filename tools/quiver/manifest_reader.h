// Reads manifests of unknown origin.

#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "manifest.h"

namespace quiver_tool {

/// One line of UTF-8: where the text is wrong, which value that is, and how.
class ManifestError final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

inline constexpr std::size_t kMostManifestBytes = std::size_t{256} << 20;

/// Throws `ManifestError`.
Manifest parseManifest(std::string_view text);

/// Reads a file. Throws `ManifestError`.
Manifest readManifest(const std::wstring& path);

/// Reads `text` as a manifest and writes again what could be read; for fuzzers. Ends the program
/// when what was written reads otherwise.
int fuzzManifest(std::string_view text);

}  // namespace quiver_tool
