// The sources that a binary's debug data names.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quiver_tool {

struct ListedSource {
  std::string path;                ///< As recorded, in the recording system's bytes.
  std::optional<std::string> md5;  ///< From the line table: 32 lower-case digits.
};

struct SourceList {
  std::vector<ListedSource> sources;  ///< Each path once, in the order of the debug data.
  std::string debugFile;              ///< Where the debug data lies, when not in the binary itself.
  std::string remark;                 ///< Why there are none, or not all; else empty.
};

/// Lists the sources of an ELF file. Nothing is downloaded. Damaged files cost their sources at
/// most: they are read by a process of its own.
SourceList listElfSources(const std::wstring& path);

}  // namespace quiver_tool
