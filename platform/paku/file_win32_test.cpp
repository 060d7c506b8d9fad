// Files of Windows: devices that look like files, patterns that look like names, locks, long paths.

#include <windows.h>
#include <algorithm>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/file.h"
#include "paku/file_info.h"
#include "paku/file_ops.h"
#include "paku/found_paths_test_support.h"

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

using quiver_test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const wchar_t* kMd5OfAbc = L"900150983cd24fb0d6963f7d28e17f72";

bool exists(const std::wstring& path) {
  FileInfo info;
  return fileInfo(Filename(path), 0, info) == 0;
}

bool canOpen(const std::wstring& path) {
  return File(Filename(path)).lastOpStatus() == 0;
}

std::wstring md5Of(const std::wstring& path) {
  return File(Filename(path)).md5checksum().text();
}

/// Keeps a file open with the given rights and sharing.
class OpenFile final {
 public:
  OpenFile(const std::wstring& path, DWORD access, DWORD share)
      : m_handle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(m_handle, INVALID_HANDLE_VALUE) << GetLastError();
  }
  ~OpenFile() { CloseHandle(m_handle); }

  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

 private:
  HANDLE m_handle;
};

TEST(FileWindows, DevicesAreNotThere) {
  TempTree tree;
  const quiver_test::ScopedDirectory here(tree.root());
  for (const wchar_t* name : {L"nul", L"NUL", L"con", L"aux", L"COM1", L"LPT1", L"\\\\.\\C:"}) {
    EXPECT_FALSE(exists(name)) << name;
    EXPECT_FALSE(canOpen(name)) << name;
  }
  EXPECT_FALSE(exists(tree.path("nul")));
  EXPECT_FALSE(canOpen(tree.path("con")));
  EXPECT_THAT(internal::findIn(tree, L"nul"), IsEmpty());
}

TEST(FileWindows, PatternsAreNoNames) {
  TempTree tree;
  tree.addFile("old", "x");
  for (const wchar_t* name : {L"ol?", L"*", L"o*d", L"<ld", L"ol>", L"\"old\"", L"old|"}) {
    EXPECT_FALSE(exists(tree.path(name))) << name;
    EXPECT_FALSE(canOpen(tree.path(name))) << name;
    EXPECT_THAT(internal::findIn(tree, name), IsEmpty()) << name;
    EXPECT_THAT(internal::findIn(tree, name, 0), IsEmpty()) << name;
  }
}

TEST(FileWindows, PatternsAreNoDirectories) {
  TempTree tree;
  tree.addFile("sub/a", "x");
  FileSearch search;
  for (const wchar_t* name : {L"su?", L"*"})
    search.addSearchDirectory(Filename(tree.root() + L"\\" + name), -1, 0);
  internal::FoundPaths found;
  search.find(L"a", found);
  EXPECT_THAT(found.paths(), IsEmpty());
}

TEST(FileWindows, StreamsOfAFileAreNoFiles) {
  TempTree tree;
  tree.addFile("a", "x");
  EXPECT_FALSE(exists(tree.path("a") + L":stream"));
  EXPECT_FALSE(exists(tree.path("a") + L"::$DATA"));
}

TEST(FileWindows, TakesSlashesAndThePrefixOfLongNames) {
  TempTree tree;
  std::wstring path = tree.addFile("sub/a", "abc");
  EXPECT_EQ(md5Of(L"\\\\?\\" + path), kMd5OfAbc);
  std::ranges::replace(path, L'\\', L'/');
  EXPECT_EQ(md5Of(path), kMd5OfAbc);
}

TEST(FileWindows, IgnoresTheCaseOfNames) {
  TempTree tree;
  tree.addFile("Sub/A.dll", "abc");
  EXPECT_EQ(md5Of(tree.path("sub/a.DLL")), kMd5OfAbc);
}

TEST(FileWindows, ReadsWhatOthersWriteAndLetsThemRenameIt) {
  TempTree tree;
  const std::wstring path = tree.addFile("log", "abc");
  {
    const OpenFile writer(path, GENERIC_WRITE, FILE_SHARE_READ);
    EXPECT_EQ(md5Of(path), kMd5OfAbc);
    EXPECT_EQ(copyFile(Filename(path), Filename(tree.path("copy")), true), 0);
  }
  const File reader{Filename(path)};
  ASSERT_EQ(reader.lastOpStatus(), 0);
  EXPECT_TRUE(MoveFileW(path.c_str(), tree.path("renamed").c_str())) << GetLastError();
}

TEST(FileWindows, DoesNotReadWhatIsSharedWithNobody) {
  TempTree tree;
  const std::wstring path = tree.addFile("locked", "abc");
  const OpenFile owner(path, GENERIC_READ, 0);
  EXPECT_TRUE(exists(path));
  EXPECT_FALSE(canOpen(path));
  EXPECT_NE(copyFile(Filename(path), Filename(tree.path("copy")), true), 0);
  EXPECT_FALSE(exists(tree.path("copy")));
}

TEST(FileWindows, PathsThatAreTooLongAreNotThere) {
  TempTree tree;
  tree.addFile("a");
  for (const std::size_t length : {32000u, 32767u, 40000u, 65535u, 65536u, 70000u, 140000u}) {
    const std::wstring name(length, L'd');
    EXPECT_FALSE(exists(name)) << length;
    EXPECT_FALSE(exists(tree.path("a") + L"\\" + name)) << length;
    EXPECT_FALSE(canOpen(L"C:" + name)) << length;
    EXPECT_NE(createDirectory(Filename(name)), 0) << length;
    EXPECT_THAT(internal::findIn(tree, name), IsEmpty()) << length;
    FileSearch search;
    search.addSearchDirectory(Filename(name), -1, 0);
    internal::FoundPaths found;
    search.find(L"a", found);
    EXPECT_THAT(found.paths(), IsEmpty()) << length;
  }
}

/// A directory whose path is longer than the limit of old, with "a.dll" in it.
std::wstring addLongDirectory(TempTree& tree) {
  const std::string name(60, 'd');
  tree.addChain(name, 8, "a.dll");
  std::wstring directory = tree.root();
  for (int level = 0; level < 8; ++level) directory += L"\\" + std::wstring(60, L'd');
  return directory;
}

TEST(FileWindows, PathsMayBeLong) {
  TempTree tree;
  const std::wstring directory = addLongDirectory(tree);
  ASSERT_GT(directory.size(), 260u);
  const std::wstring file = directory + L"\\a.dll";
  EXPECT_TRUE(exists(file));
  EXPECT_EQ(md5Of(file), L"d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(createDirectory(Filename(directory + L"\\new")), 0);
  EXPECT_EQ(copyFile(Filename(file), Filename(directory + L"\\new\\b.dll"), true), 0);
  EXPECT_TRUE(exists(directory + L"\\new\\b.dll"));
  FileModifiable(Filename(directory + L"\\new\\b.dll"), true);
}

TEST(FileWindows, LongTreesAreSearchedAndNamesGivenWithoutThePrefix) {
  TempTree tree;
  const std::wstring directory = addLongDirectory(tree);
  FileSearch search;
  search.addSearchDirectory(Filename(tree.root()), -1, 0);
  internal::FoundPaths found;
  search.find(L"A.DLL", found);
  EXPECT_THAT(found.paths(), ElementsAre(directory + L"\\a.dll"));
  FileSearch alone;
  alone.addSearchDirectory(Filename(directory), 0, 0);
  internal::FoundPaths there;
  alone.find(L"a.dll", there);
  EXPECT_THAT(there.paths(), ElementsAre(directory + L"\\a.dll"));
}

TEST(FileWindows, NamesMayHoldHalvesOfPairs) {
  TempTree tree;
  const std::wstring name = {L'a', wchar_t{0xD800}, L'.', L'c'};
  const HANDLE handle = CreateFileW(
      (tree.root() + L"\\" + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE)
    GTEST_SKIP() << "this file system takes no such name";
  CloseHandle(handle);
  EXPECT_TRUE(exists(tree.root() + L"\\" + name));
  EXPECT_THAT(internal::findIn(tree, name), ElementsAre(name));
  DeleteFileW((tree.root() + L"\\" + name).c_str());
}

TEST(FileWindows, ProbingLeavesTheErrorModeAsItWas) {
  DWORD former = 0;
  SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, &former);
  TempTree tree;
  EXPECT_TRUE(canOpen(tree.addFile("a")));
  EXPECT_FALSE(exists(tree.path("missing")));
  EXPECT_THAT(internal::findIn(tree, L"a"), ElementsAre(L"a"));
  EXPECT_EQ(GetThreadErrorMode(), DWORD{SEM_NOGPFAULTERRORBOX});
  SetThreadErrorMode(former, nullptr);
}

}  // namespace
}  // namespace PAKU_3_1
