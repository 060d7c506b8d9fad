// Another current directory for the time of a test.

#pragma once

#include <filesystem>

#include "support/native_path.h"

namespace quiver_test {

/// Changes the current directory and goes back at the end. Throws when `dir` cannot be entered.
class ScopedDirectory final {
 public:
  explicit ScopedDirectory(const NativePath& dir);
  ~ScopedDirectory();

  ScopedDirectory(const ScopedDirectory&) = delete;
  ScopedDirectory& operator=(const ScopedDirectory&) = delete;

 private:
  std::filesystem::path m_former;
};

}  // namespace quiver_test
