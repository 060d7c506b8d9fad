// When a tree that is walked is worth an index.

#include "paku/walked_trees.h"

#include <cstdint>
#include <optional>

#include <gtest/gtest.h>

namespace PAKU_3_1::internal {
namespace {

constexpr FileIdentity kTree = {1, 2};
constexpr FileIdentity kOther = {1, 3};
constexpr IndexSettings kSettings = {IndexUse::kFromSecondScan, 0, 100};

class WalkedTreesTest : public testing::Test {
 protected:
  std::optional<std::uint64_t> search(const FileIdentity& tree = kTree,
                                      const IndexSettings& settings = kSettings) {
    return m_trees.search(tree, ++m_now, settings);
  }

  WalkedTrees m_trees;
  std::uint64_t m_now = 0;
};

TEST_F(WalkedTreesTest, ALargeOneIsWorthAnIndexOnceItWasWalked) {
  EXPECT_FALSE(search());
  EXPECT_FALSE(search()) << "the first walk is still under way";
  m_trees.walked(kTree, 100);
  EXPECT_EQ(search(), 1u);
  EXPECT_FALSE(search(kOther));
  EXPECT_EQ(search(), 2u) << "searches ago";
}

TEST_F(WalkedTreesTest, TheLongestWalkTellsTheSize) {
  search();
  m_trees.walked(kTree, 99);
  EXPECT_FALSE(search());
  m_trees.walked(kTree, 100);
  m_trees.walked(kTree, 1);
  EXPECT_TRUE(search());
}

TEST_F(WalkedTreesTest, FromTheFirstScanAllAre) {
  constexpr IndexSettings kAtOnce = {IndexUse::kFromFirstScan, 0, 100};
  EXPECT_EQ(search(kTree, kAtOnce), 0u);
  m_trees.cannotBeKnown(kTree);
  EXPECT_EQ(search(kTree, kAtOnce), 1u);
}

TEST_F(WalkedTreesTest, WhatCannotBeKnownIsAskedForAgainMuchLater) {
  search();
  m_trees.walked(kTree, 100);
  EXPECT_TRUE(search());
  m_trees.cannotBeKnown(kTree);
  int pause = 0;
  while (pause < 1000 && !search()) ++pause;
  EXPECT_EQ(pause, 64);
}

TEST_F(WalkedTreesTest, ManyAreForgottenTogether) {
  search();
  m_trees.walked(kTree, 100);
  for (std::uint64_t file = 10; file < 10 + 4096; ++file) search({7, file});
  EXPECT_FALSE(search());
}

TEST_F(WalkedTreesTest, ThoseThatWereNotSearchedAreNotKept) {
  m_trees.walked(kTree, 100);
  m_trees.cannotBeKnown(kTree);
  EXPECT_FALSE(search());
  m_trees.walked(kTree, 100);
  EXPECT_TRUE(search());
}

}  // namespace
}  // namespace PAKU_3_1::internal
