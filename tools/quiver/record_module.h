// What a binary of this machine records: itself, its symbol file, its sources.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "manifest.h"

namespace quiver_tool {

struct RecordedBinary {
  std::optional<ManifestModule> module;
  bool isPe = false;
  std::vector<std::string> remarks;  ///< What is not recorded, and why. UTF-8.
};

RecordedBinary recordBinary(const std::wstring& path);

}  // namespace quiver_tool
