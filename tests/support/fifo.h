// Named pipes, which the standard file library cannot make.

#pragma once

#include <filesystem>

namespace quiver_test {

/// Throws when the system refuses.
void makeFifo(const std::filesystem::path& path);

}  // namespace quiver_test
