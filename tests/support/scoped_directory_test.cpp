#include "support/scoped_directory.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/temp_tree.h"

namespace quiver_test {
namespace {

namespace fs = std::filesystem;

TEST(ScopedDirectory, EntersAndComesBack) {
  TempTree tree;
  const fs::path before = fs::current_path();
  {
    const ScopedDirectory inside(tree.addDirectory("a"));
    EXPECT_EQ(fs::current_path(), fs::path(tree.path("a")));
  }
  EXPECT_EQ(fs::current_path(), before);
}

TEST(ScopedDirectory, ThrowsForWhatCannotBeEntered) {
  TempTree tree;
  const fs::path before = fs::current_path();
  EXPECT_THROW(ScopedDirectory(tree.path("missing")), fs::filesystem_error);
  EXPECT_EQ(fs::current_path(), before);
}

}  // namespace
}  // namespace quiver_test
