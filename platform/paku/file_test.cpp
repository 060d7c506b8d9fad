// Opening and reading files, and making them writable.

#include "paku/file.h"

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1 {
namespace {

using quiver_test::TempTree;

bool canOpen(const std::wstring& path) {
  return File(Filename(path)).lastOpStatus() == 0;
}

std::wstring md5Of(const std::wstring& path) {
  return File(Filename(path)).md5checksum().text();
}

bool isOwnerWritable(const fs::path& path) {
  return (fs::status(path).permissions() & fs::perms::owner_write) != fs::perms::none;
}

TEST(File, OpensRegularFiles) {
  TempTree tree;
  EXPECT_TRUE(canOpen(tree.addFile("a.dll", "x")));
}

TEST(File, DoesNotOpenWhatIsNotThere) {
  TempTree tree;
  EXPECT_FALSE(canOpen(L""));
  EXPECT_FALSE(canOpen(tree.path("missing")));
}

TEST(File, DoesNotOpenWhatCannotBeRead) {
  TempTree tree;
  const std::wstring unreadable = tree.addUnreadableFile("a");
  EXPECT_FALSE(canOpen(unreadable));
  EXPECT_EQ(md5Of(unreadable), L"");
}

TEST(File, OpensWhatIsBeingWritten) {
  TempTree tree;
  const std::wstring path = tree.addFile("log", "abc");
  const std::ofstream writer(quiver_test::NativePath(path).get(), std::ios::app);
  ASSERT_TRUE(writer.is_open());
  EXPECT_EQ(md5Of(path), L"900150983cd24fb0d6963f7d28e17f72");
}

TEST(File, DoesNotOpenDirectories) {
  TempTree tree;
  EXPECT_FALSE(canOpen(tree.root()));
}

TEST(File, Md5IsThatOfTheWholeContent) {
  TempTree tree;
  EXPECT_EQ(md5Of(tree.addFile("empty")), L"d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(md5Of(tree.addFile("abc", "abc")), L"900150983cd24fb0d6963f7d28e17f72");
  EXPECT_EQ(md5Of(tree.addFile("long", std::string(1000003, 'x'))),
            L"55a76be3046fa1e602ae663deccfcd78");
}

TEST(File, Md5CanBeAskedAgain) {
  TempTree tree;
  File file(Filename(tree.addFile("abc", "abc")));
  EXPECT_EQ(file.md5checksum(), String(L"900150983cd24fb0d6963f7d28e17f72"));
  EXPECT_EQ(file.md5checksum(), String(L"900150983cd24fb0d6963f7d28e17f72"));
}

TEST(FileModifiable, DoesNothingUnlessAskedTo) {
  TempTree tree;
  const fs::path path = tree.addFile("a.dll");
  fs::permissions(path, fs::perms::owner_read);
  FileModifiable(Filename(path.wstring()), false);
  EXPECT_FALSE(isOwnerWritable(path));
}

TEST(FileModifiable, CreatesNothing) {
  TempTree tree;
  FileModifiable(Filename(tree.path("missing")), true);
  FileModifiable(Filename(L""), true);
  EXPECT_TRUE(fs::is_empty(tree.root()));
}

TEST(FileModifiable, MakesAReadOnlyFileWritableAndKeepsItsContent) {
  TempTree tree;
  const fs::path path = tree.addFile("a.dll", "content");
  fs::permissions(path, fs::perms::owner_read);
  FileModifiable(Filename(quiver_test::toWide(path)), true);
  EXPECT_TRUE(isOwnerWritable(path));
  EXPECT_EQ(fs::file_size(path), 7u);
}

}  // namespace
}  // namespace PAKU_3_1
