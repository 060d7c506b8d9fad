// Copies that are complete or not there, and directories.

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/file.h"
#include "paku/file_ops.h"
#include "paku/scoped_user_test_support.h"

#include "support/file_contents.h"
#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1 {
namespace {

using quiver_test::contentOf;
using quiver_test::entriesOf;
using quiver_test::TempTree;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

int copy(const std::wstring& from, const std::wstring& to, bool overwrite = true) {
  return copyFile(Filename(from), Filename(to), overwrite);
}

struct stat statusOf(const fs::path& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status;
}

TEST(CopyFilePosix, CopiesBetweenFileSystems) {
  TempTree tree;
  const std::string content(700'001, 'q');
  const std::wstring from = tree.addFile("from", content);
  const fs::path to = "/dev/shm/quiver-copy-" + std::to_string(getpid());
  ASSERT_EQ(copy(from, to.wstring()), 0);
  EXPECT_EQ(contentOf(to), content);
  fs::remove(to);
}

TEST(CopyFilePosix, CopiesWhatTheKernelMakesUp) {
  TempTree tree;
  ASSERT_EQ(copy(L"/proc/version", tree.path("version")), 0);
  EXPECT_EQ(contentOf(tree.path("version")), contentOf("/proc/version"));
}

TEST(CopyFilePosix, KeepsTheModificationTimeToTheNanosecond) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "x");
  for (const std::int64_t seconds : {1'000'000'000, -86'400}) {
    tree.setModificationTime("from", seconds, 123'456'789);
    ASSERT_EQ(copy(from, tree.path("to")), 0);
    EXPECT_EQ(statusOf(tree.path("to")).st_mtim.tv_sec, seconds);
    EXPECT_EQ(statusOf(tree.path("to")).st_mtim.tv_nsec, 123'456'789);
  }
}

TEST(CopyFilePosix, MakesTheCopyWritableForItsOwner) {
  TempTree tree;
  const std::wstring from = tree.addFile("from");
  fs::permissions(from, fs::perms(0455));
  ASSERT_EQ(copy(from, tree.path("to")), 0);
  EXPECT_EQ(fs::status(tree.path("to")).permissions(), fs::perms(0655));
}

TEST(CopyFilePosix, ReplacesALinkAndNotWhatItLeadsTo) {
  TempTree tree;
  tree.addFile("precious", "old");
  const std::wstring from = tree.addFile("from", "new");
  EXPECT_EQ(copy(from, tree.addLink("to", "precious")), 0);
  EXPECT_EQ(contentOf(tree.path("precious")), "old");
  EXPECT_EQ(contentOf(tree.path("to")), "new");
}

TEST(CopyFilePosix, TakesTheLongestNameThereCanBe) {
  TempTree tree;
  const std::string name(255, 'n');
  EXPECT_EQ(copy(tree.addFile("from", "x"), tree.path(name)), 0);
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre("from", name));
}

TEST(CopyFilePosix, RefusesWhatIsNoRegularFile) {
  TempTree tree;
  const std::wstring to = tree.path("to");
  EXPECT_NE(copy(tree.addUnreadableFile("pipe"), to), 0);
  EXPECT_NE(copy(tree.addDirectory("dir"), to), 0);
  EXPECT_NE(copy(L"/dev/zero", to), 0);
  EXPECT_NE(copy(tree.path("missing"), to), 0);
  EXPECT_NE(copy(L"", to), 0);
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre("pipe", "dir"));
}

TEST(CopyFilePosix, LeavesTargetsThatAreNoFilesAlone) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "x");
  EXPECT_NE(copy(from, tree.addUnreadableFile("pipe")), 0);
  EXPECT_NE(copy(from, tree.addDirectory("dir")), 0);
  EXPECT_NE(copy(from, tree.path("dir") + L"/."), 0);
  EXPECT_NE(copy(from, L"/"), 0);
  EXPECT_NE(copy(from, L""), 0);
  EXPECT_TRUE(fs::is_fifo(tree.path("pipe")));
  EXPECT_TRUE(fs::is_empty(tree.path("dir")));
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre("from", "pipe", "dir"));
}

TEST(CopyFilePosix, LeavesNothingBehindWhenTheContentDoesNotFit) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", std::string(1'000'000, 'x'));
  const std::wstring to = tree.addFile("to", "old");
  const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit former{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
  rlimit small = former;
  small.rlim_cur = 300'000;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const int byTheKernel = copy(from, to);
  const int byHand = copy(from, L"/dev/shm/quiver-does-not-fit");
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &former), 0);
  std::signal(SIGXFSZ, formerHandler);
  EXPECT_EQ(byTheKernel, EFBIG);
  EXPECT_EQ(byHand, EFBIG);
  EXPECT_FALSE(fs::exists("/dev/shm/quiver-does-not-fit"));
  EXPECT_EQ(contentOf(to), "old");
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre("from", "to"));
}

TEST(CopyFilePosix, FailsInADirectoryThatCannotBeWritten) {
  TempTree tree;
  const std::wstring from = tree.addFile("from");
  fs::permissions(tree.root(), fs::perms(0555));
  const internal::OrdinaryUser user;
  ASSERT_TRUE(user.isOrdinary());
  EXPECT_EQ(copy(from, tree.path("to")), EACCES);
}

TEST(CopyFilePosix, WritesInADirectoryThatCannotBeRead) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "x");
  tree.addDirectory("drop");
  fs::permissions(tree.path("drop"), fs::perms(0333));
  fs::permissions(tree.root(), fs::perms(0755));
  const internal::OrdinaryUser user;
  ASSERT_TRUE(user.isOrdinary());
  EXPECT_EQ(copy(from, tree.path("drop/to")), 0);
  EXPECT_EQ(contentOf(tree.path("drop/to")), "x");
}

TEST(CreateDirectoryPosix, ThatIsThereIsASuccess) {
  TempTree tree;
  EXPECT_EQ(createDirectory(Filename(tree.addDirectory("a"))), 0);
  EXPECT_EQ(createDirectory(Filename(tree.addLink("link", "a"))), 0);
  EXPECT_EQ(createDirectory(Filename(L"/")), 0);
}

TEST(CreateDirectoryPosix, FailsWhereAFileIs) {
  TempTree tree;
  EXPECT_NE(createDirectory(Filename(tree.addFile("a"))), 0);
  EXPECT_NE(createDirectory(Filename(tree.addLink("dangling", "missing"))), 0);
  EXPECT_NE(createDirectory(Filename(L"")), 0);
}

TEST(CreateDirectoryPosix, FailsWhereNothingMayBeCreated) {
  EXPECT_NE(createDirectory(Filename(L"/proc/quiver")), 0);
}

TEST(CreateDirectoryPosix, LeavesTheModeToTheUmask) {
  TempTree tree;
  const mode_t former = umask(027);
  EXPECT_EQ(createDirectory(Filename(tree.path("a"))), 0);
  umask(former);
  EXPECT_EQ(fs::status(tree.path("a")).permissions(), fs::perms(0750));
}

}  // namespace
}  // namespace PAKU_3_1
