// What lies on the disk after a test did its work.

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quiver_test {

/// Returns the bytes of a file; empty when it cannot be read.
std::string contentOf(const std::filesystem::path& path);

/// Returns the names of all entries, hidden ones too, in the order of the system: a temporary file
/// that stayed shows here.
std::vector<std::string> entriesOf(const std::filesystem::path& directory);

}  // namespace quiver_test
