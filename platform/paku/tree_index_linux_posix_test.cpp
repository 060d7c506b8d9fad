// When a tree is indexed, and when an index is given up. What an index answers is compared with
// walks in tree_freshness_linux_posix_test.cpp.

#include <filesystem>
#include <string>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/confined_process_test_support.h"
#include "paku/file_search.h"
#include "paku/found_paths_test_support.h"
#include "paku/index_settings.h"
#include "paku/scoped_user_test_support.h"
#include "paku/tree_registry.h"
#include "paku/watch_queue_posix.h"

#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1::internal {
namespace {

using quiver_test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kMemory = std::size_t{16} << 20;

/// Notes how the first directory of a search was served.
class FirstDirectory final : public IScanWatcher, public IFileScanCallback {
 public:
  bool isFromIndex = false;
  std::uint64_t entries = 0;

  bool onFileFound(const String&) override { return true; }
  void onDirectory(const ScannedDirectory& directory) override {
    isFromIndex = directory.isFromIndex;
    entries = directory.entries;
  }
};

/// No test sees the indexes of another, and none leaves its settings behind.
class TreeIndexLinux : public testing::Test {
 protected:
  TreeIndexLinux() { TreeRegistry::instance().clear(); }
  ~TreeIndexLinux() override {
    TreeRegistry::instance().clear();
    setIndexSettings(m_former);
  }

  /// Small trees are indexed too.
  static void use(IndexUse use, std::size_t memory = kMemory) {
    setIndexSettings({use, memory, 0});
  }
  static IndexCounts counts() { return TreeRegistry::instance().counts(); }

  /// How many indexes the searches built that `work` does.
  template <class Work>
  static std::size_t builtBy(const Work& work) {
    const std::size_t before = counts().built;
    work();
    return counts().built - before;
  }
  template <class Work>
  static std::size_t answeredBy(const Work& work) {
    const std::size_t before = counts().answered;
    work();
    return counts().answered - before;
  }

  const IndexSettings m_former = indexSettings();
  TempTree m_tree;
};

TEST_F(TreeIndexLinux, IsBuiltByTheSecondScan) {
  use(IndexUse::kFromSecondScan);
  m_tree.addFile("a/x.c");
  EXPECT_EQ(builtBy([&] { findIn(m_tree, L"x.c"); }), 0u);
  EXPECT_EQ(builtBy([&] { findIn(m_tree, L"y.c"); }), 1u);
  EXPECT_EQ(counts().trees, 1u);
  EXPECT_EQ(builtBy([&] { findIn(m_tree, L"x.c"); }), 0u);
  EXPECT_EQ(answeredBy([&] { EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"a/x.c")); }), 1u);
}

TEST_F(TreeIndexLinux, CanBeSwitchedOff) {
  use(IndexUse::kNever);
  EXPECT_EQ(builtBy([&] {
              for (int i = 0; i < 4; ++i) findIn(m_tree, L"x.c");
            }),
            0u);
}

TEST_F(TreeIndexLinux, CanBeBuiltByTheFirstScan) {
  use(IndexUse::kFromFirstScan);
  EXPECT_EQ(builtBy([&] { findIn(m_tree, L"x.c"); }), 1u);
}

TEST_F(TreeIndexLinux, ServesEveryDepthAndTheSameTreeUnderAnotherName) {
  use(IndexUse::kFromFirstScan);
  m_tree.addFile("x.c");
  m_tree.addFile("a/b/x.c");
  findIn(m_tree, L"x.c");
  EXPECT_EQ(builtBy([&] {
              EXPECT_THAT(findIn(m_tree, L"x.c", 0), ElementsAre(L"x.c"));
              EXPECT_THAT(findIn(m_tree, L"x.c", 1), ElementsAre(L"x.c"));
              EXPECT_THAT(findIn(m_tree, L"x.c", 2), ElementsAre(L"x.c", L"a/b/x.c"));
            }),
            0u);
  const fs::path renamed = fs::path(m_tree.root()).concat("-renamed");
  fs::rename(m_tree.root(), renamed);
  FileSearch search;
  search.addSearchDirectory(Filename(renamed.wstring()), kWholeTree, 0);
  FoundPaths found;
  EXPECT_EQ(builtBy([&] { search.find(L"x.c", found); }), 0u);
  EXPECT_EQ(found.paths().size(), 2u);
  fs::rename(renamed, m_tree.root());
}

TEST_F(TreeIndexLinux, IsThatOfTheDirectoryThatBearsTheNameNow) {
  use(IndexUse::kFromFirstScan);
  m_tree.addFile("root/old.c");
  m_tree.addFile("other/new.c");
  const auto found = [&] {
    FileSearch search;
    search.addSearchDirectory(Filename(m_tree.path("root")), kWholeTree, 0);
    FoundPaths paths;
    search.find(L"old.c", paths);
    search.find(L"new.c", paths);
    std::vector<std::wstring> names;
    for (const std::wstring& path : paths.paths())
      names.push_back(fs::path(path).filename().wstring());
    return names;
  };
  EXPECT_THAT(found(), ElementsAre(L"old.c"));
  fs::rename(m_tree.path("root"), m_tree.path("away"));
  fs::rename(m_tree.path("other"), m_tree.path("root"));
  EXPECT_THAT(found(), ElementsAre(L"new.c"));
}

TEST_F(TreeIndexLinux, TakesInAllThatHappenedSince) {
  use(IndexUse::kFromFirstScan);
  findIn(m_tree, L"x.c");
  EXPECT_EQ(builtBy([&] {
              m_tree.addFile("a/b/x.c");
              EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"a/b/x.c"));
              fs::rename(m_tree.path("a/b"), m_tree.path("c"));
              EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"c/x.c"));
              m_tree.addFile("c/d/x.c");
              EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"c/x.c", L"c/d/x.c"));
              fs::remove_all(m_tree.path("c"));
              EXPECT_THAT(findIn(m_tree, L"x.c"), IsEmpty());
            }),
            0u);
}

TEST_F(TreeIndexLinux, NeedsAFileSystemThatTellsOfChanges) {
  use(IndexUse::kFromFirstScan);
  FileSearch search;
  search.addSearchDirectory(Filename(L"/proc/sys/kernel"), kWholeTree, 0);
  FoundPaths found;
  EXPECT_EQ(builtBy([&] { search.find(L"ostype", found); }), 0u);
  EXPECT_THAT(found.paths(), ElementsAre(L"/proc/sys/kernel/ostype"));
}

/// Directories of a file system that does not tell of changes.
std::vector<std::wstring> silentDirectories(std::size_t count) {
  std::vector<std::wstring> found;
  for (const auto& entry : fs::recursive_directory_iterator("/proc/sys")) {
    if (found.size() < count && entry.is_directory())
      found.push_back(entry.path().wstring());
  }
  return found;
}

TEST_F(TreeIndexLinux, GivesNoPlaceToWhatCannotBeKnown) {
  use(IndexUse::kFromSecondScan);
  m_tree.addFile("a/x.c");
  for (int i = 0; i < 2; ++i) {
    findIn(m_tree, L"x.c");
    findIn(m_tree, L"x.c", 0);
  }
  TempTree plain;
  for (int i = 0; i < 2; ++i) findIn(plain, L"x.c", 0);
  const IndexCounts before = counts();
  ASSERT_EQ(before.trees, 1u);
  for (const int depth : {kWholeTree, 0})
    for (const std::wstring& directory : silentDirectories(40)) {
      FileSearch search;
      search.addSearchDirectory(Filename(directory.c_str()), depth, 0);
      FoundPaths found;
      for (int i = 0; i < 3; ++i) search.find(L"absent", found);
    }
  EXPECT_EQ(counts().trees, 1u);
  EXPECT_EQ(counts().entries, before.entries);
  EXPECT_EQ(counts().dropped, before.dropped);
  EXPECT_EQ(answeredBy([&] {
              findIn(m_tree, L"x.c");
              findIn(plain, L"x.c", 0);
            }),
            2u);
}

TEST_F(TreeIndexLinux, LeavesHalfOfTheWatchesToOthers) {
  use(IndexUse::kFromFirstScan);
  m_tree.addFile("a/x.c");
  std::size_t taken = 0;
  while (WatchBudget::take()) ++taken;
  EXPECT_EQ(builtBy([&] { EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"a/x.c")); }), 0u);
  WatchBudget::giveBack(taken);
  EXPECT_EQ(builtBy([&] { findIn(m_tree, L"x.c"); }), 1u);
}

TEST_F(TreeIndexLinux, CannotBeBuiltOnOneThreadWhileAnotherDropsAll) {
  use(IndexUse::kFromFirstScan);
  std::size_t taken = 0;
  while (WatchBudget::take()) ++taken;
  std::thread other([] {
    for (int i = 0; i < 200; ++i) TreeRegistry::instance().clear();
  });
  for (int i = 0; i < 200; ++i) findIn(m_tree, L"x.c", 0);
  other.join();
  WatchBudget::giveBack(taken);
  EXPECT_EQ(counts().bytes, 0u);
}

TEST_F(TreeIndexLinux, GivesItsWatchesBack) {
  use(IndexUse::kFromFirstScan);
  m_tree.addFile("a/b/x.c");
  const std::size_t before = WatchBudget::used();
  findIn(m_tree, L"x.c");
  EXPECT_EQ(WatchBudget::used(), before + 3);
  fs::remove_all(m_tree.path("a/b"));
  findIn(m_tree, L"x.c");
  EXPECT_EQ(WatchBudget::used(), before + 2);
  TreeRegistry::instance().clear();
  EXPECT_EQ(WatchBudget::used(), before);
}

TEST_F(TreeIndexLinux, IsNotKeptWhenItTakesTooMuchMemory) {
  m_tree.addFile("a/x.c");
  use(IndexUse::kFromFirstScan, 1024);
  EXPECT_EQ(builtBy([&] { EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"a/x.c")); }), 0u);
  EXPECT_EQ(counts().bytes, 0u);
}

TEST_F(TreeIndexLinux, MakesRoomForTheNextTree) {
  TempTree other;
  use(IndexUse::kFromFirstScan);
  findIn(m_tree, L"x.c");
  const std::size_t one = counts().bytes;
  EXPECT_GT(one, 0u);
  use(IndexUse::kFromFirstScan, one + one / 2);
  findIn(other, L"x.c");
  EXPECT_EQ(counts().trees, 1u);
  EXPECT_EQ(builtBy([&] { findIn(other, L"x.c"); }), 0u) << "the tree used last stays";
  EXPECT_EQ(builtBy([&] { findIn(m_tree, L"x.c"); }), 1u);
}

TEST_F(TreeIndexLinux, IsNotUsedWithTheRightsOfAnother) {
  if (geteuid() != 0)
    GTEST_SKIP() << "only root can become somebody else";
  use(IndexUse::kFromFirstScan);
  m_tree.addFile("closed/x.c");
  fs::permissions(m_tree.path("closed"), fs::perms::owner_all);
  fs::permissions(m_tree.root(), fs::perms::all);
  EXPECT_THAT(findIn(m_tree, L"x.c"), ElementsAre(L"closed/x.c"));
  const OrdinaryUser nobody;
  ASSERT_TRUE(nobody.isOrdinary());
  EXPECT_THAT(findIn(m_tree, L"x.c"), IsEmpty());
}

TEST_F(TreeIndexLinux, OfAChildIsItsOwn) {
  use(IndexUse::kFromFirstScan);
  m_tree.addFile("x.c");
  findIn(m_tree, L"x.c");
  const pid_t child = fork();
  if (child == 0) {
    m_tree.addFile("of_child.c");
    const bool isRight = counts().trees == 0 && findIn(m_tree, L"of_child.c").size() == 1 &&
                         counts().built == 1 && findIn(m_tree, L"of_child.c").size() == 1;
    _exit(isRight ? 0 : 1);
  }
  int status = 1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(
      builtBy([&] { EXPECT_THAT(findIn(m_tree, L"of_child.c"), ElementsAre(L"of_child.c")); }), 0u)
      << "the parent's changes were not taken away by the child";
}

TEST_F(TreeIndexLinux, AnswersForDirectoriesThatAreSearchedAlone) {
  use(IndexUse::kFromFirstScan);
  m_tree.addFile("x.c");
  m_tree.addFile("below/x.c");
  EXPECT_EQ(builtBy([&] { EXPECT_THAT(findIn(m_tree, L"x.c", 0), ElementsAre(L"x.c")); }), 1u);
  m_tree.addFile("X.c");
  EXPECT_EQ(
      answeredBy([&] { EXPECT_THAT(findIn(m_tree, L"x.c", 0), ElementsAre(L"x.c", L"X.c")); }), 1u);
}

TEST_F(TreeIndexLinux, WaitsLongerAfterItWasGivenUp) {
  use(IndexUse::kFromSecondScan);
  m_tree.addFile("root/x.c");
  const auto search = [&] {
    FileSearch files;
    files.addSearchDirectory(Filename(m_tree.path("root")), kWholeTree, 0);
    FoundPaths found;
    files.find(L"x.c", found);
  };
  search();
  EXPECT_EQ(builtBy(search), 1u);
  std::size_t taken = 0;
  while (WatchBudget::take()) ++taken;
  m_tree.addFile("root/new/x.c");
  EXPECT_EQ(builtBy(search), 0u) << "the new directory cannot be watched";
  WatchBudget::giveBack(taken);
  EXPECT_EQ(builtBy(search), 0u);
  EXPECT_EQ(builtBy(search), 1u);
}

/// Returns what was found before, under and after a mount, and how many indexes were given up.
std::string searchAroundAMount() {
  setIndexSettings({IndexUse::kFromFirstScan, kMemory});
  fs::create_directories("root/a");
  fclose(fopen("root/a/x.c", "w"));
  const auto count = [] {
    FileSearch search;
    search.addSearchDirectory(Filename(L"root"), kWholeTree, 0);
    FoundPaths found;
    search.find(L"x.c", found);
    return std::to_string(found.paths().size());
  };
  std::string counted = count() + count();
  if (mount("none", "root/a", "tmpfs", 0, "size=1m") != 0)
    return "no mount";
  counted += count() + count();
  umount("root/a");
  counted += count() + count();
  return counted + " dropped " + std::to_string(TreeRegistry::instance().counts().dropped > 0);
}

TEST_F(TreeIndexLinux, IsGivenUpWhenAMountChangesWhatLiesBelow) {
  const Confined confined = runConfined(ConfinedUser::kOwnerOfNamespace, searchAroundAMount);
  if (!confined.isPossible)
    GTEST_SKIP() << "this machine gives us no file system of our own";
  EXPECT_TRUE(confined.hasEnded);
  EXPECT_EQ(confined.report, "110011 dropped 1");
}

TEST_F(TreeIndexLinux, TellsAWatcherWhatCameFromIt) {
  TempTree tree;
  tree.addFile("a/x.c");
  tree.addFile("b/y.c");
  use(IndexUse::kFromSecondScan);
  FileSearch search;
  search.addSearchDirectory(Filename(String(tree.path("").c_str()), 0, false), -1, 0);
  FirstDirectory walked;
  search.find(String(L"x.c"), walked, &walked);
  EXPECT_FALSE(walked.isFromIndex);
  EXPECT_EQ(walked.entries, 4u);
  FirstDirectory indexed;
  search.find(String(L"x.c"), indexed, &indexed);
  EXPECT_TRUE(indexed.isFromIndex);
  EXPECT_EQ(indexed.entries, 1u);
}

}  // namespace
}  // namespace PAKU_3_1::internal
