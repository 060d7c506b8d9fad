// What is said of files and directories.

#include "paku/file_info.h"

#include <string>

#include <gtest/gtest.h>

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

using quiver_test::TempTree;

bool exists(const std::wstring& path) {
  FileInfo info;
  return fileInfo(Filename(path), 0, info) == 0;
}

FileInfo infoOf(const std::wstring& path) {
  FileInfo info;
  EXPECT_EQ(fileInfo(Filename(path), 0, info), 0);
  return info;
}

TEST(FileInfo, TellsFilesFromDirectories) {
  TempTree tree;
  const FileInfo file = infoOf(tree.addFile("a.dll", "12345"));
  EXPECT_TRUE(file.isRegular);
  EXPECT_FALSE(file.isDirectory);
  EXPECT_EQ(file.size, 5u);
  const FileInfo directory = infoOf(tree.addDirectory("dir"));
  EXPECT_TRUE(directory.isDirectory);
  EXPECT_FALSE(directory.isRegular);
}

TEST(FileInfo, NothingBearsTheEmptyName) {
  TempTree tree;
  const quiver_test::ScopedDirectory here(tree.root());
  EXPECT_FALSE(exists(L""));
}

TEST(FileInfo, LeavesTheResultAloneWhenNothingIsThere) {
  TempTree tree;
  FileInfo info;
  info.size = 7;
  EXPECT_NE(fileInfo(Filename(tree.path("missing")), 0, info), 0);
  EXPECT_EQ(info.size, 7u);
}

TEST(FileInfo, SeparatorsAtTheEndDoNotMatter) {
  TempTree tree;
  EXPECT_TRUE(infoOf(tree.addDirectory("dir") + L"//").isDirectory);
  EXPECT_TRUE(infoOf(tree.addFile("a.dll") + L"/").isRegular);
}

TEST(FileInfo, SizesPassThirtyTwoBits) {
  TempTree tree;
  constexpr std::uint64_t kSize = 3ull << 30;
  EXPECT_EQ(infoOf(tree.addSparseFile("big", kSize)).size, kSize);
}

TEST(FileInfo, AFileThatCannotBeReadIsThere) {
  TempTree tree;
  const FileInfo info = infoOf(tree.addUnreadableFile("a"));
  EXPECT_FALSE(info.isDirectory);
}

TEST(FileInfo, TellsTheTimeInSecondsSince1970) {
  TempTree tree;
  const std::wstring path = tree.addFile("old");
  tree.setModificationTime("old", 1'000'000'000);
  EXPECT_EQ(infoOf(path).modificationTime, 1'000'000'000);
}

TEST(FileInfo, NamesThatNoFileCanHaveAreNotThere) {
  TempTree tree;
  const std::wstring file = tree.addFile("a");
  EXPECT_TRUE(exists(file));
  EXPECT_FALSE(exists(file + std::wstring(1, L'\0')));
  EXPECT_FALSE(exists(tree.path(std::wstring(256, L'x'))));
}

}  // namespace
}  // namespace PAKU_3_1
