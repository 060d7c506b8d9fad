// An index where the system tells of changes below one handle. Under emulation notices come late,
// so these tests wait for them; that none is missing is what they show.

#include <windows.h>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/change_notices_win32.h"
#include "paku/file_search.h"
#include "paku/found_paths_test_support.h"
#include "paku/index_settings.h"
#include "paku/tree_registry.h"

#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1::internal {
namespace {

using quiver_test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr std::size_t kMemory = std::size_t{16} << 20;

class TreeIndexWindows : public testing::Test {
 protected:
  TreeIndexWindows() {
    TreeRegistry::instance().clear();
    trustLateNotices(true);
    setIndexSettings({IndexUse::kFromFirstScan, kMemory});
  }
  ~TreeIndexWindows() override {
    TreeRegistry::instance().clear();
    trustLateNotices(false);
    setIndexSettings(m_former);
  }

  static IndexCounts counts() { return TreeRegistry::instance().counts(); }

  /// Searches until the index says what is expected, for some seconds.
  std::vector<std::wstring> findInTheEnd(const wchar_t* name, std::size_t count) const {
    std::vector<std::wstring> found;
    for (int i = 0; i < 500; ++i) {
      found = findIn(m_tree, name);
      if (found.size() == count)
        return found;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return found;
  }

  const IndexSettings m_former = indexSettings();
  TempTree m_tree;
};

TEST_F(TreeIndexWindows, AnswersLikeAWalk) {
  m_tree.addFile("b/a/x.c");
  m_tree.addFile("B2/X.C");
  m_tree.addFile("x.c/y.c");
  m_tree.addFile("a/b/Src/x.c");
  for (const wchar_t* name : {L"x.c", L"X.c", L"src/x.c", L"a\\x.c", L"x.c\\Y.c", L"none", L"b"}) {
    for (const int depth : {kWholeTree, 0, 1, 2}) {
      setIndexSettings({IndexUse::kNever, kMemory});
      const std::vector<std::wstring> walked = findIn(m_tree, name, depth);
      setIndexSettings({IndexUse::kFromFirstScan, kMemory});
      findIn(m_tree, name);
      EXPECT_EQ(findIn(m_tree, name, depth), walked) << name << " to depth " << depth;
    }
  }
  EXPECT_EQ(counts().trees, 1u);
  EXPECT_GT(counts().answered, 7u);
}

TEST_F(TreeIndexWindows, TakesInAllThatHappenedSince) {
  findIn(m_tree, L"x.c");
  const std::size_t built = counts().built;
  m_tree.addFile("a/b/x.c");
  EXPECT_THAT(findInTheEnd(L"x.c", 1), ElementsAre(L"a/b/x.c"));
  fs::rename(m_tree.path("a/b"), m_tree.path("c"));
  fs::remove_all(m_tree.path("a"));
  m_tree.addFile("c/d/X.c");
  EXPECT_THAT(findInTheEnd(L"x.c", 2), ElementsAre(L"c/x.c", L"c/d/X.c"));
  fs::remove_all(m_tree.path("c"));
  EXPECT_THAT(findInTheEnd(L"x.c", 0), IsEmpty());
  EXPECT_EQ(counts().built, built) << "the same index all the time";
}

TEST_F(TreeIndexWindows, TakesInDirectoriesThatComeWithTheirContents) {
  TempTree outside;
  outside.addFile("moved/one/x.c");
  outside.addFile("moved/two/x.c");
  findIn(m_tree, L"x.c");
  fs::rename(outside.path("moved"), m_tree.path("moved"));
  EXPECT_THAT(findInTheEnd(L"x.c", 2), ElementsAre(L"moved/one/x.c", L"moved/two/x.c"));
  fs::rename(m_tree.path("moved"), outside.path("moved"));
  EXPECT_THAT(findInTheEnd(L"x.c", 0), IsEmpty());
}

TEST_F(TreeIndexWindows, KeepsNobodyFromRenamingAndDeleting) {
  m_tree.addFile("a/x.c");
  findIn(m_tree, L"x.c");
  ASSERT_EQ(counts().trees, 1u);
  std::error_code error;
  fs::rename(m_tree.path("a"), m_tree.path("b"), error);
  EXPECT_FALSE(error) << error.message();
  const fs::path renamed = fs::path(m_tree.root()).concat(L"-renamed");
  fs::rename(m_tree.root(), renamed, error);
  EXPECT_FALSE(error) << error.message();
  fs::rename(renamed, m_tree.root(), error);
  EXPECT_FALSE(error) << error.message();
  fs::remove_all(m_tree.path("b"), error);
  EXPECT_FALSE(error) << error.message();
}

TEST_F(TreeIndexWindows, IsThatOfTheDirectoryThatBearsTheNameNow) {
  m_tree.addFile("root/old.c");
  m_tree.addFile("other/new.c");
  const auto search = [&](const wchar_t* name) {
    FileSearch files;
    files.addSearchDirectory(Filename(m_tree.path("root")), kWholeTree, 0);
    FoundPaths found;
    files.find(name, found);
    return found.paths().size();
  };
  EXPECT_EQ(search(L"old.c"), 1u);
  fs::rename(m_tree.path("root"), m_tree.path("away"));
  fs::rename(m_tree.path("other"), m_tree.path("root"));
  EXPECT_EQ(search(L"new.c"), 1u);
  EXPECT_EQ(search(L"old.c"), 0u);
}

TEST_F(TreeIndexWindows, IsNotKeptWhenItTakesTooMuchMemory) {
  setIndexSettings({IndexUse::kFromFirstScan, 1024});
  m_tree.addFile("a/x.c");
  EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"a/x.c"));
  EXPECT_EQ(counts().bytes, 0u);
}

TEST_F(TreeIndexWindows, OutlivesTheThreadThatBuiltIt) {
  m_tree.addFile("a/x.c");
  std::thread([&] { findIn(m_tree, L"x.c"); }).join();
  const std::size_t built = counts().built;
  ASSERT_EQ(counts().trees, 1u);
  m_tree.addFile("b/x.c");
  EXPECT_THAT(findInTheEnd(L"x.c", 2), ElementsAre(L"a/x.c", L"b/x.c"));
  EXPECT_EQ(counts().built, built);
}

TEST_F(TreeIndexWindows, LeavesShortNamesToAWalk) {
  m_tree.addFile("a/x.c");
  findIn(m_tree, L"x.c");
  const std::size_t answered = counts().answered;
  EXPECT_THAT(findIn(m_tree, L"LONGNA~1/x.c"), ElementsAre(L"a/x.c"));
  EXPECT_EQ(counts().answered, answered);
}

TEST_F(TreeIndexWindows, IsNotUsedByAThreadThatActsForAnother) {
  m_tree.addFile("a/x.c");
  findIn(m_tree, L"x.c");
  const std::size_t answered = counts().answered;
  if (!ImpersonateSelf(SecurityImpersonation))
    GTEST_SKIP() << "no thread can act for another here";
  EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"a/x.c"));
  RevertToSelf();
  EXPECT_EQ(counts().answered, answered);
  EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"a/x.c"));
  EXPECT_EQ(counts().answered, answered + 1);
}

TEST_F(TreeIndexWindows, IsNotUsedWhereNoticesComeLate) {
  trustLateNotices(false);
  if (areNoticesInTime())
    GTEST_SKIP() << "here they come in time";
  m_tree.addFile("a/x.c");
  EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"a/x.c"));
  EXPECT_EQ(counts().trees, 0u);
  m_tree.addFile("b/x.c");
  EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"a/x.c", L"b/x.c"));
}

/// Makes one change below the tree, or tries to. There are no links, so nothing leads out of it.
class Changes final {
 public:
  Changes(const TempTree& tree, unsigned seed) : m_tree(tree), m_random(seed) {}

  void makeOne() {
    std::error_code ignored;
    switch (m_random() % 8) {
      case 0:
      case 1:
      case 2:
        if (FileHandle file{CreateFileW(any().c_str(),
                                        GENERIC_WRITE,
                                        0,
                                        nullptr,
                                        CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL,
                                        nullptr)})
          return;
        [[fallthrough]];
      case 3:
      case 4:
        fs::create_directory(any(), ignored);
        return;
      case 5:
        fs::remove_all(any(), ignored);
        return;
      default:
        fs::rename(any(), any(), ignored);
    }
  }

 private:
  /// A place one to three levels below the root.
  fs::path any() {
    const wchar_t* const names[] = {L"a", L"B", L"src", L"x.c", L"y.c"};
    fs::path path = m_tree.root();
    for (unsigned level = m_random() % 3 + 1; level > 0; --level)
      path /= names[m_random() % std::size(names)];
    return path;
  }

  const TempTree& m_tree;
  std::mt19937 m_random;
};

TEST_F(TreeIndexWindows, MissesNoChange) {
  trustLateNotices(false);
  if (!areNoticesInTime())
    GTEST_SKIP() << "this emulation now and then misses what happens in a directory that is new";
  const unsigned seed = std::random_device()();
  Changes changes(m_tree, seed);
  for (unsigned i = 0; i < 300; ++i) {
    for (unsigned n = 0; n <= i % 5; ++n) changes.makeOne();
    setIndexSettings({IndexUse::kNever, kMemory});
    const std::vector<std::wstring> walked = findIn(m_tree, L"src/x.c");
    setIndexSettings({IndexUse::kFromFirstScan, kMemory});
    std::vector<std::wstring> found;
    for (int tries = 0; tries < 500 && (found = findIn(m_tree, L"src/x.c")) != walked; ++tries)
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ASSERT_EQ(found, walked) << "seed " << seed << ", round " << i;
  }
  EXPECT_GT(counts().answered, 200u);
}

TEST(ChangeNoticesWindows, TellOfEachPathBelow) {
  TempTree tree;
  FileHandle handle(CreateFileW(tree.root().c_str(),
                                FILE_LIST_DIRECTORY,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr,
                                OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OVERLAPPED,
                                nullptr));
  ASSERT_TRUE(handle);
  ChangeNotices notices(std::move(handle));
  ASSERT_TRUE(notices.isOpen());
  std::vector<std::wstring> paths;
  EXPECT_TRUE(notices.take(paths));
  EXPECT_THAT(paths, IsEmpty());
  CreateDirectoryW(tree.path("one").c_str(), nullptr);
  CreateDirectoryW(tree.path("two").c_str(), nullptr);
  for (int i = 0; i < 500 && paths.size() < 2; ++i) {
    EXPECT_TRUE(notices.take(paths));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_THAT(paths, UnorderedElementsAre(L"one", L"two"));
}

}  // namespace
}  // namespace PAKU_3_1::internal
