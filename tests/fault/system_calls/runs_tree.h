// Where the runs of a test have their files: in memory, where the system has a place for that.
// Thousands of times the content of a file is sent to the disk, which would be slow and tell
// nothing.

#pragma once

#include <filesystem>
#include <unistd.h>

#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace quiver_test {

/// While this is there, all temporary trees are made in it, also those of processes that crash.
class RunsTree final {
 public:
  TempTree& get() { return m_tree; }

 private:
  static std::filesystem::path place() {
    const char* const inMemory = "/dev/shm";
    if (access(inMemory, W_OK | X_OK) == 0)
      return inMemory;
    return std::filesystem::temp_directory_path();
  }

  ScopedVariable m_place{"TMPDIR", place()};
  TempTree m_tree;
  ScopedVariable m_inside{"TMPDIR", m_tree.root()};
};

}  // namespace quiver_test
