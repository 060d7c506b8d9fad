// What lies in an archive, judged by the content of its files.

#pragma once

#include <filesystem>
#include <vector>

#include "support/native_path.h"

namespace quiver_test {

/// Every file below the archive is in one of the three.
struct ArchiveContents {
  std::vector<std::filesystem::path> whole;   ///< Under a final name, with the content it claims.
  std::vector<std::filesystem::path> wrong;   ///< Under a final name, with any other content.
  std::vector<std::filesystem::path> others;  ///< Under no final name, as temporary files are.
};

/// An archive that is missing is empty.
ArchiveContents contentsOf(const NativePath& archive);

}  // namespace quiver_test
