// Pipes, links and times that other systems do not have.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/temp_tree.h"

namespace quiver_test {
namespace {

namespace fs = std::filesystem;

TEST(TempTreePosix, TakesAPipeForAFileThatCannotBeRead) {
  TempTree tree;
  EXPECT_TRUE(fs::is_fifo(tree.addUnreadableFile("a/pipe")));
}

TEST(TempTreePosix, AddsLinksAsGiven) {
  TempTree tree;
  const std::wstring link = tree.addLink("a/link", "nowhere");
  EXPECT_EQ(fs::read_symlink(link), "nowhere");
}

TEST(TempTreePosix, SetsTimesBeforeTheEpoch) {
  TempTree tree;
  const std::wstring path = tree.addFile("old");
  tree.setModificationTime("old", -2, 500'000'000);
  struct stat status = {};
  ASSERT_EQ(stat(fs::path(path).c_str(), &status), 0);
  EXPECT_EQ(status.st_mtim.tv_sec, -2);
  EXPECT_EQ(status.st_mtim.tv_nsec, 500'000'000);
}

TEST(TempTreePosix, LeavesTheTargetsOfLinksAloneWhenItIsRemoved) {
  TempTree other;
  const std::wstring kept = other.addFile("sub/kept.dll", "x");
  std::optional<TempTree> tree(std::in_place);
  const std::wstring root = tree->root();
  tree->addLink("to_directory", other.root());
  tree->addLink("to_file", kept);
  tree.reset();
  EXPECT_FALSE(fs::exists(root));
  std::ifstream file(fs::path(kept), std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "x");
}

}  // namespace
}  // namespace quiver_test
