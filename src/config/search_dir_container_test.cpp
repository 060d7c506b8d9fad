// Directories per category.

#include "config/search_dir_container.h"

#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/directories.h"

namespace QV_2_9 {
namespace {

using quiver_test::directoriesOf;
using Dirs = std::vector<std::wstring>;

const Dirs kNone = {quiver_test::kNoIterator};

class SearchDirContainer : public testing::Test {
 protected:
  Dirs dirs(search_category_t category) {
    return directoriesOf(m_container->createIterator(category));
  }

  ObjectPtr<IEditableSearchDirContainer> m_container = IEditableSearchDirContainer::create();
};

TEST_F(SearchDirContainer, BeginsWithOneReference) {
  EXPECT_EQ(m_container->addRef(), 2u);
  EXPECT_EQ(m_container->release(), 1u);
  EXPECT_EQ(m_container->getVersion(), 1);
}

TEST_F(SearchDirContainer, HasNoIteratorForAnUntouchedCategory) {
  for (const auto category : {scBinaryFiles, scSymbolFiles, scSourceFiles, scAllFiles})
    EXPECT_EQ(dirs(category), kNone);
}

TEST_F(SearchDirContainer, HasAnEmptyIteratorForAClearedCategory) {
  EXPECT_TRUE(m_container->clearSearchDirs(scSourceFiles));
  EXPECT_EQ(dirs(scSourceFiles), Dirs());
  EXPECT_EQ(dirs(scBinaryFiles), kNone);
}

TEST_F(SearchDirContainer, KeepsCategoriesApart) {
  EXPECT_TRUE(m_container->addSearchDir(scBinaryFiles, L"/bin", false, false));
  EXPECT_TRUE(m_container->addSearchDir(scAllFiles, L"/all", true, true));
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/bin"}));
  EXPECT_EQ(dirs(scAllFiles), (Dirs{L"/all +rh"}));
  EXPECT_EQ(dirs(scSymbolFiles), kNone);
  EXPECT_EQ(dirs(scSourceFiles), kNone);
}

class SearchDirContainerCategory : public testing::TestWithParam<std::int32_t> {};

TEST_P(SearchDirContainerCategory, IsRefusedWhenItIsNone) {
  const auto category = static_cast<search_category_t>(GetParam());
  const ObjectPtr<IEditableSearchDirContainer> container = IEditableSearchDirContainer::create();
  EXPECT_FALSE(container->addSearchDir(category, L"/dir", true, true));
  EXPECT_FALSE(container->clearSearchDirs(category));
  EXPECT_EQ(directoriesOf(container->createIterator(category)), kNone);
}

INSTANTIATE_TEST_SUITE_P(OutOfRange,
                         SearchDirContainerCategory,
                         testing::Values(0,
                                         5,
                                         -1,
                                         std::numeric_limits<std::int32_t>::min(),
                                         std::numeric_limits<std::int32_t>::max()));

// Intended: the answer is about the category, not about the directory.
TEST_F(SearchDirContainer, AcceptsDuplicatesAndNull) {
  EXPECT_TRUE(m_container->addSearchDir(scBinaryFiles, L"/dir", true, false));
  EXPECT_TRUE(m_container->addSearchDir(scBinaryFiles, L"/DIR", false, true));
  EXPECT_TRUE(m_container->addSearchDir(scBinaryFiles, nullptr, true, true));
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/dir +rh"}));
}

TEST_F(SearchDirContainer, NullDirectoryMakesTheEmptyList) {
  EXPECT_TRUE(m_container->addSearchDir(scBinaryFiles, nullptr, true, true));
  EXPECT_EQ(dirs(scBinaryFiles), Dirs());
}

TEST_F(SearchDirContainer, TakesDirectoriesAgainAfterClearing) {
  m_container->addSearchDir(scBinaryFiles, L"/a", true, true);
  m_container->addSearchDir(scBinaryFiles, L"/b", true, true);
  EXPECT_TRUE(m_container->clearSearchDirs(scBinaryFiles));
  EXPECT_EQ(dirs(scBinaryFiles), Dirs());
  m_container->addSearchDir(scBinaryFiles, L"/b", false, false);
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/b"}));
}

TEST_F(SearchDirContainer, IteratorIsASnapshot) {
  m_container->addSearchDir(scBinaryFiles, L"/a", false, false);
  const ObjectPtr<ISearchDirIterator> before = m_container->createIterator(scBinaryFiles);
  m_container->addSearchDir(scBinaryFiles, L"/a", true, false);
  m_container->addSearchDir(scBinaryFiles, L"/b", false, false);
  EXPECT_EQ(directoriesOf(before), (Dirs{L"/a"}));
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/a +r", L"/b"}));
  m_container->clearSearchDirs(scBinaryFiles);
  EXPECT_EQ(directoriesOf(before), (Dirs{L"/a"}));
}

TEST_F(SearchDirContainer, IteratorOutlivesTheContainer) {
  m_container->addSearchDir(scBinaryFiles, L"/a", false, false);
  const ObjectPtr<ISearchDirIterator> iterator = m_container->createIterator(scBinaryFiles);
  m_container = ObjectPtr<IEditableSearchDirContainer>();
  EXPECT_EQ(directoriesOf(iterator), (Dirs{L"/a"}));
}

TEST_F(SearchDirContainer, CopiesTheText) {
  std::wstring dir = L"/a";
  m_container->addSearchDir(scBinaryFiles, dir.c_str(), false, false);
  dir.assign(L"/b");
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/a"}));
}

TEST_F(SearchDirContainer, IsUsedFromSeveralThreads) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([this, i] {
      const auto category = static_cast<search_category_t>(i % 2 + 1);
      for (int round = 0; round < 50; ++round) {
        m_container->addSearchDir(
            category, (L"/d/" + std::to_wstring(round)).c_str(), false, false);
        // Every reference to an iterator stays on this thread.
        EXPECT_FALSE(directoriesOf(m_container->createIterator(category)).empty());
        m_container->clearSearchDirs(scAllFiles);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(dirs(scBinaryFiles).size(), 50u);
  EXPECT_EQ(dirs(scSymbolFiles).size(), 50u);
}

}  // namespace
}  // namespace QV_2_9
