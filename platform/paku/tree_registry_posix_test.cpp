// Which trees get an index when there are many. The trees are searched in turn, as the lookups of a
// viewer do.

#include <cstdint>
#include <deque>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "paku/file_search.h"
#include "paku/found_paths_test_support.h"
#include "paku/index_settings.h"
#include "paku/tree_registry.h"

#include "support/temp_tree.h"

namespace PAKU_3_1::internal {
namespace {

using quiver_test::TempTree;

constexpr std::size_t kMemory = std::size_t{64} << 20;
constexpr std::size_t kPlaces = 24;
constexpr std::uint64_t kLarge = 10;  // in place of the real bound, for small tests

/// Queues of notices that this process has.
std::size_t openQueues() {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    count += std::filesystem::read_symlink(entry, gone) == "anon_inode:inotify" ? 1u : 0u;
  }
  return count;
}

class TreeRegistryPosix : public testing::Test {
 protected:
  TreeRegistryPosix() {
    TreeRegistry::instance().clear();
    setIndexSettings({IndexUse::kFromSecondScan, kMemory, kLarge});
  }
  ~TreeRegistryPosix() override {
    TreeRegistry::instance().clear();
    setIndexSettings(m_former);
  }

  /// Adds trees of so many entries each.
  std::deque<TempTree>& grow(std::deque<TempTree>& trees, std::size_t count, std::size_t entries) {
    for (std::size_t i = 0; i < count; ++i) {
      TempTree& tree = trees.emplace_back();
      for (std::size_t file = 1; file < entries; ++file) tree.addFile("d/" + std::to_string(file));
    }
    return trees;
  }

  /// Searches each of the trees once. Returns how many were answered by an index.
  static std::size_t searchAll(const std::deque<TempTree>& trees, const wchar_t* name = L"none") {
    const std::size_t before = TreeRegistry::instance().counts().answered;
    for (const TempTree& tree : trees) findIn(tree, name);
    return TreeRegistry::instance().counts().answered - before;
  }

  const IndexSettings m_former = indexSettings();
};

TEST_F(TreeRegistryPosix, SmallTreesAreWalked) {
  std::deque<TempTree> small;
  grow(small, 30, kLarge - 1);
  const std::size_t before = openQueues();
  for (int i = 0; i < 4; ++i) EXPECT_EQ(searchAll(small), 0u);
  EXPECT_EQ(openQueues(), before);
  small.front().addFile("d/one_more");
  EXPECT_EQ(searchAll(small), 0u) << "the walk that finds it grown";
  EXPECT_EQ(searchAll(small), 1u);
}

TEST_F(TreeRegistryPosix, WhatIsFoundBeforeMuchWasReadIsWalked) {
  std::deque<TempTree> trees;
  grow(trees, 1, 1000).front().addFile("found_at_once");
  FileSearch search;
  search.addSearchDirectory(Filename(trees.front().root()), kWholeTree, 0);
  const std::size_t before = TreeRegistry::instance().counts().built;
  for (int i = 0; i < 4; ++i) {
    FoundPaths first(1);
    search.find(L"found_at_once", first);
    ASSERT_EQ(first.paths().size(), 1u);
  }
  EXPECT_EQ(TreeRegistry::instance().counts().built, before);
}

TEST_F(TreeRegistryPosix, MostOfMoreTreesThanThereArePlacesAreKept) {
  std::deque<TempTree> trees;
  grow(trees, kPlaces + 16, kLarge);
  for (int i = 0; i < 2; ++i) searchAll(trees);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(searchAll(trees), kPlaces);
}

TEST_F(TreeRegistryPosix, SmallTreesDriveOutNoLargeOne) {
  std::deque<TempTree> large;
  grow(large, 1, 100);
  std::deque<TempTree> small;
  grow(small, 2 * kPlaces, 3);
  for (int i = 0; i < 2; ++i) searchAll(large);
  for (int i = 0; i < 3; ++i) {
    searchAll(small);
    EXPECT_EQ(searchAll(large), 1u);
  }
}

TEST_F(TreeRegistryPosix, TreesThatAreSearchedNowDriveOutThoseThatNoLongerAre) {
  std::deque<TempTree> former;
  grow(former, kPlaces, kLarge);
  for (int i = 0; i < 2; ++i) searchAll(former);
  ASSERT_EQ(searchAll(former), kPlaces);
  std::deque<TempTree> later;
  grow(later, 5, kLarge);
  for (int i = 0; i < 8; ++i) searchAll(later);
  EXPECT_EQ(searchAll(later), later.size());
}

TEST_F(TreeRegistryPosix, TheFirstScanIsEnoughWhenItIsAsked) {
  setIndexSettings({IndexUse::kFromFirstScan, kMemory, kLarge});
  std::deque<TempTree> small;
  grow(small, kPlaces + 1, 2);
  EXPECT_EQ(searchAll(small), small.size());
}

}  // namespace
}  // namespace PAKU_3_1::internal
