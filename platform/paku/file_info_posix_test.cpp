// What is said of files, directories and what is neither.

#include <string>

#include <gtest/gtest.h>

#include "paku/file_info.h"

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

TEST(FileInfoPosix, TheRootIsADirectory) {
  EXPECT_TRUE(infoOf(L"/").isDirectory);
}

TEST(FileInfoPosix, SpecialFilesExistAndAreNeither) {
  TempTree tree;
  const FileInfo fifo = infoOf(tree.addUnreadableFile("pipe"));
  EXPECT_FALSE(fifo.isRegular);
  EXPECT_FALSE(fifo.isDirectory);
}

TEST(FileInfoPosix, FollowsLinks) {
  TempTree tree;
  tree.addFile("a.dll", "12345");
  EXPECT_EQ(infoOf(tree.addLink("link", "a.dll")).size, 5u);
  EXPECT_FALSE(exists(tree.addLink("dangling", "missing")));
  EXPECT_FALSE(exists(tree.addLink("loop", "loop")));
}

TEST(FileInfoPosix, TimesBefore1970AreRoundedDown) {
  TempTree tree;
  const std::wstring path = tree.addFile("old");
  tree.setModificationTime("old", -2, 500'000'000);
  EXPECT_EQ(infoOf(path).modificationTime, -2);
  tree.setModificationTime("old", 1'000'000'000, 999'999'999);
  EXPECT_EQ(infoOf(path).modificationTime, 1'000'000'000);
}

TEST(FileInfoPosix, NamesThatNoFileCanHaveDoNotExist) {
  TempTree tree;
  const std::wstring file = tree.addFile("a");
  EXPECT_FALSE(exists(file + std::wstring(1, L'\0')));
  EXPECT_FALSE(exists(tree.root() + L"/" + wchar_t{0xD800}));
  EXPECT_FALSE(exists(tree.root() + L"/" + std::wstring(256, L'x')));
  std::wstring longPath = tree.root();
  while (longPath.size() < 10000) longPath += L"/.";
  EXPECT_FALSE(exists(longPath + L"/a"));
}

TEST(FileInfoPosix, UsesTheExactText) {
  TempTree tree;
  EXPECT_TRUE(exists(tree.addFile("src\\a.cpp")));
  tree.addFile("other/b.cpp");
  EXPECT_FALSE(exists(tree.root() + L"/other\\b.cpp"));
  EXPECT_FALSE(exists(tree.root() + L"/OTHER/b.cpp"));
}

}  // namespace
}  // namespace PAKU_3_1
