// Copies that are complete or not there, and directories.

#include "paku/file_ops.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/file_info.h"

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

TEST(CopyFile, CopiesTheContent) {
  TempTree tree;
  const std::string content(3'000'001, 'q');
  const std::wstring from = tree.addFile("from", content);
  tree.addDirectory("to");
  EXPECT_EQ(copy(from, tree.path("to/a.dll")), 0);
  EXPECT_EQ(contentOf(tree.path("to/a.dll")), content);
  EXPECT_THAT(entriesOf(tree.path("to")), ElementsAre("a.dll"));
}

TEST(CopyFile, CopiesAFileInTheStateThatIsExpected) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "new");
  const std::optional<FileState> state = fileState(Filename(from));
  ASSERT_TRUE(state);
  EXPECT_EQ(copyFile(Filename(from), Filename(tree.path("to")), true, &*state), 0);
  EXPECT_EQ(contentOf(tree.path("to")), "new");
}

TEST(CopyFile, DoesNotCopyAnotherFileThanIsExpected) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "one");
  const std::optional<FileState> state = fileState(Filename(from));
  ASSERT_TRUE(state);
  fs::rename(tree.addFile("other", "two"), from);
  EXPECT_EQ(copyFile(Filename(from), Filename(tree.path("to")), true, &*state), kFileHasChanged);
  EXPECT_THAT(entriesOf(tree.root()), ElementsAre("from"));
}

// The writer waits for the copy to begin.
TEST(CopyFile, DoesNotCopyAFileThatChangesMeanwhile) {
  constexpr std::size_t kSize = 64'000'000;
  TempTree tree;
  const std::wstring from = tree.addFile("from", std::string(kSize, 'q'));
  tree.addDirectory("to");
  const std::optional<FileState> state = fileState(Filename(from));
  ASSERT_TRUE(state);
  std::thread writer([&] {
    while (entriesOf(tree.path("to")).empty()) std::this_thread::yield();
    std::ofstream(fs::path(from), std::ios::app | std::ios::binary) << '!';
  });
  const int result = copyFile(Filename(from), Filename(tree.path("to/a.dll")), true, &*state);
  writer.join();
  if (result == 0)
    EXPECT_EQ(fs::file_size(tree.path("to/a.dll")), kSize) << "it was faster than the writer";
  else
    EXPECT_EQ(result, kFileHasChanged);
}

TEST(FileState, IsThatOfTheFileAndNotOfItsName) {
  TempTree tree;
  const std::wstring file = tree.addFile("a", "one");
  const std::optional<FileState> state = fileState(Filename(file));
  ASSERT_TRUE(state);
  EXPECT_EQ(state->size, 3u);
  fs::rename(file, tree.path("b"));
  const std::optional<FileState> renamed = fileState(Filename(tree.path("b")));
  ASSERT_TRUE(renamed);
  EXPECT_EQ(renamed->file, state->file);
  EXPECT_EQ(renamed->modified, state->modified);
  tree.setModificationTime("b", 1'000'000'000);
  EXPECT_EQ(fileState(Filename(tree.path("b")))->modified,
            1'000'000'000 * std::int64_t{1'000'000'000});
  EXPECT_FALSE(fileState(Filename(tree.path("missing"))));
}

TEST(CopyFile, CopiesAnEmptyFile) {
  TempTree tree;
  EXPECT_EQ(copy(tree.addFile("from"), tree.path("to")), 0);
  EXPECT_TRUE(fs::is_empty(tree.path("to")));
}

TEST(CopyFile, ReplacesAFile) {
  TempTree tree;
  const std::wstring to = tree.addFile("to", "old and longer");
  fs::permissions(to, fs::perms::owner_read);
  EXPECT_EQ(copy(tree.addFile("from", "new"), to), 0);
  EXPECT_EQ(contentOf(to), "new");
}

TEST(CopyFile, KeepsAFileThatMayNotBeReplaced) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "new");
  EXPECT_NE(copy(from, tree.addFile("to", "old"), false), 0);
  EXPECT_EQ(contentOf(tree.path("to")), "old");
  EXPECT_EQ(copy(from, tree.path("other"), false), 0);
  EXPECT_EQ(contentOf(tree.path("other")), "new");
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre("from", "to", "other"));
}

TEST(CopyFile, OntoItselfKeepsTheContent) {
  TempTree tree;
  const std::wstring file = tree.addFile("a", "content");
  EXPECT_EQ(copy(file, file), 0);
  EXPECT_EQ(contentOf(file), "content");
}

TEST(CopyFile, TakesNamesRelativeToTheCurrentDirectory) {
  TempTree tree;
  tree.addFile("from", "x");
  const quiver_test::ScopedDirectory here(tree.root());
  EXPECT_EQ(copy(L"from", L"to"), 0);
  EXPECT_EQ(contentOf("to"), "x");
}

TEST(CopyFile, FailsWithoutTheTargetsDirectory) {
  TempTree tree;
  EXPECT_NE(copy(tree.addFile("from"), tree.path("missing/to")), 0);
  EXPECT_THAT(entriesOf(tree.root()), ElementsAre("from"));
}

TEST(CopyFile, LeavesNothingBehindWhenTheNameCannotBeGiven) {
  TempTree tree;
  EXPECT_NE(copy(tree.addFile("from"), tree.path(std::string(256, 'n'))), 0);
  EXPECT_THAT(entriesOf(tree.root()), ElementsAre("from"));
}

TEST(CopyFile, ShowsOnlyCompleteCopiesWhileManyAreMade) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", std::string(300'000, 'x'));
  const std::wstring to = tree.path("out/to");
  tree.addDirectory("out");
  ASSERT_EQ(copy(from, to), 0);
  std::atomic<int> failures{0};
  std::atomic<int> incomplete{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 5; ++round) {
        failures += copy(from, to) == 0 ? 0 : 1;
        std::ifstream file(quiver_test::NativePath(to).get(), std::ios::binary);
        // Some systems keep readers out for the moment of the replacement.
        const auto size = std::distance(std::istreambuf_iterator<char>(file), {});
        incomplete += !file.is_open() || size == 300'000 ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(incomplete, 0);
  EXPECT_THAT(entriesOf(tree.path("out")), ElementsAre("to"));
}

TEST(CreateDirectory, CreatesOneLevel) {
  TempTree tree;
  EXPECT_EQ(createDirectory(Filename(tree.path("a"))), 0);
  EXPECT_TRUE(fs::is_directory(tree.path("a")));
  EXPECT_NE(createDirectory(Filename(tree.path("b/c"))), 0);
  EXPECT_FALSE(fs::exists(tree.path("b")));
}

TEST(CreateDirectory, TakesASeparatorAtTheEnd) {
  TempTree tree;
  EXPECT_EQ(createDirectory(Filename(tree.path("a") + L"/")), 0);
  EXPECT_TRUE(fs::is_directory(tree.path("a")));
}

TEST(CopyFile, KeepsTheModificationTime) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "x");
  tree.setModificationTime("from", 1'000'000'000);
  ASSERT_EQ(copy(from, tree.path("to")), 0);
  FileInfo info;
  ASSERT_EQ(fileInfo(Filename(tree.path("to")), 0, info), 0);
  EXPECT_EQ(info.modificationTime, 1'000'000'000);
}

TEST(CopyFile, MakesTheCopyOfAReadOnlyFileWritable) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "x");
  fs::permissions(from, fs::perms::owner_read);
  ASSERT_EQ(copy(from, tree.path("to")), 0);
  EXPECT_NE(fs::status(tree.path("to")).permissions() & fs::perms::owner_write, fs::perms::none);
}

TEST(CopyFile, RefusesWhatIsNoReadableFile) {
  TempTree tree;
  const std::wstring to = tree.path("to");
  EXPECT_NE(copy(tree.addUnreadableFile("unreadable"), to), 0);
  EXPECT_NE(copy(tree.addDirectory("dir"), to), 0);
  EXPECT_NE(copy(tree.path("missing"), to), 0);
  EXPECT_NE(copy(L"", to), 0);
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre("unreadable", "dir"));
}

TEST(CopyFile, LeavesADirectoryUnderTheTargetsNameAlone) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "x");
  EXPECT_NE(copy(from, tree.addDirectory("dir")), 0);
  EXPECT_NE(copy(from, L""), 0);
  EXPECT_TRUE(fs::is_empty(tree.path("dir")));
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre("from", "dir"));
}

TEST(CreateDirectory, IsASuccessWhereOneIs) {
  TempTree tree;
  EXPECT_EQ(createDirectory(Filename(tree.addDirectory("a"))), 0);
}

TEST(CreateDirectory, FailsWhereAFileIsAndWithoutAName) {
  TempTree tree;
  EXPECT_NE(createDirectory(Filename(tree.addFile("a"))), 0);
  EXPECT_NE(createDirectory(Filename(L"")), 0);
}

}  // namespace
}  // namespace PAKU_3_1
