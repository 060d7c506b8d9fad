// Copies on Windows: what others hold open, attributes, long names, and what stays behind.

#include <windows.h>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/file.h"
#include "paku/file_info.h"
#include "paku/file_ops.h"
#include "paku/temporary_name.h"

#include "support/file_contents.h"
#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1 {
namespace {

using quiver_test::contentOf;
using quiver_test::TempTree;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

int copy(const std::wstring& from, const std::wstring& to, bool overwrite = true) {
  return copyFile(Filename(from), Filename(to), overwrite);
}

/// All entries: a temporary file that stayed shows here.
std::vector<std::wstring> entriesOf(const fs::path& directory) {
  std::vector<std::wstring> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory))
    names.push_back(entry.path().filename().wstring());
  return names;
}

DWORD attributesOf(const std::wstring& path) {
  return GetFileAttributesW(path.c_str());
}

/// Keeps a file open for reading, shared as told.
class Reader final {
 public:
  Reader(const std::wstring& path, DWORD share)
      : m_handle(
            CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
    EXPECT_NE(m_handle, INVALID_HANDLE_VALUE) << GetLastError();
  }
  ~Reader() { CloseHandle(m_handle); }

  Reader(const Reader&) = delete;
  Reader& operator=(const Reader&) = delete;

 private:
  HANDLE m_handle;
};

TEST(CopyFileWindows, ReplacesAReadOnlyFile) {
  TempTree tree;
  const std::wstring to = tree.addFile("to", "old");
  SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(copy(tree.addFile("from", "new"), to), 0);
  EXPECT_EQ(contentOf(to), "new");
  EXPECT_FALSE(attributesOf(to) & FILE_ATTRIBUTE_READONLY);
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre(L"from", L"to"));
}

TEST(CopyFileWindows, KeepsATargetThatOthersHold) {
  TempTree tree;
  const std::wstring to = tree.addFile("to", "old");
  SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_READONLY);
  {
    const Reader reader(to, FILE_SHARE_READ);
    EXPECT_NE(copy(tree.addFile("from", "new"), to), 0);
  }
  EXPECT_EQ(contentOf(to), "old");
  EXPECT_TRUE(attributesOf(to) & FILE_ATTRIBUTE_READONLY);
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre(L"from", L"to"));
}

TEST(CopyFileWindows, LeavesAReadOnlyTargetAloneThatIsNotToBeReplaced) {
  TempTree tree;
  const std::wstring to = tree.addFile("to", "old");
  SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(copy(tree.addFile("from", "new"), to, false), ERROR_FILE_EXISTS);
  EXPECT_EQ(contentOf(to), "old");
  EXPECT_TRUE(attributesOf(to) & FILE_ATTRIBUTE_READONLY);
}

TEST(CopyFileWindows, DoesNotTouchTemporaryFilesOfOthers) {
  // Another machine's process may have this one's number, in a directory that both write in.
  constexpr unsigned kOthers = 200;  // more than were counted before
  TempTree tree;
  const std::wstring from = tree.addFile("from", "x");
  const auto nameOf = [](unsigned i) {
    return "out/" + internal::temporaryName(GetCurrentProcessId(), i);
  };
  for (unsigned i = 0; i < kOthers; ++i) tree.addFile(nameOf(i), "other");
  EXPECT_EQ(copy(from, tree.path("out/to")), 0);
  EXPECT_EQ(contentOf(tree.path("out/to")), "x");
  for (unsigned i = 0; i < kOthers; ++i) EXPECT_EQ(contentOf(tree.path(nameOf(i))), "other") << i;
}

TEST(CopyFileWindows, TakesPathsThatLeaveNoRoomForALongerName) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "x");
  std::wstring directory = tree.path("sub");
  directory += L"\\" + std::wstring(244 - directory.size(), L'd');
  ASSERT_EQ(createDirectory(Filename(tree.path("sub"))), 0);
  ASSERT_EQ(createDirectory(Filename(directory)), 0);
  EXPECT_EQ(copy(from, directory + L"\\a"), 0);
  EXPECT_THAT(entriesOf(directory), ElementsAre(L"a"));
}

TEST(CopyFileWindows, RefusesDevicesAndPatterns) {
  TempTree tree;
  const std::wstring from = tree.addFile("from", "x");
  const quiver_test::ScopedDirectory here(tree.root());
  for (const wchar_t* name : {L"nul", L"con", L"\\\\.\\pipe\\x", L"to?", L"to*", L"to:stream"}) {
    EXPECT_NE(copy(from, name), 0) << name;
    EXPECT_NE(copy(name, tree.path("copy")), 0) << name;
    EXPECT_NE(createDirectory(Filename(name)), 0) << name;
  }
  EXPECT_THAT(entriesOf(tree.root()), ElementsAre(L"from"));
}

TEST(CopyFileWindows, TargetsLoseTheirLastDotsAndBlanks) {
  TempTree tree;
  EXPECT_EQ(copy(tree.addFile("from", "x"), tree.path("to") + L". "), 0);
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre(L"from", L"to"));
}

TEST(CopyFileWindows, NamesOfOtherCaseAreTheSameTarget) {
  TempTree tree;
  tree.addFile("To", "old");
  EXPECT_EQ(copy(tree.addFile("from", "new"), tree.path("tO")), 0);
  EXPECT_EQ(contentOf(tree.path("to")), "new");
  EXPECT_EQ(entriesOf(tree.root()).size(), 2u);
}

TEST(CreateDirectoryWindows, TheRootOfADriveIsThere) {
  TempTree tree;
  const std::wstring drive = tree.root().substr(0, 2);
  EXPECT_EQ(createDirectory(Filename(drive + L"\\")), 0);
  EXPECT_EQ(createDirectory(Filename(drive)), 0);
}

TEST(FileModifiableWindows, KeepsTheOtherAttributes) {
  TempTree tree;
  const std::wstring path = tree.addFile("a");
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  FileModifiable(Filename(path), true);
  EXPECT_EQ(attributesOf(path) & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN),
            DWORD{FILE_ATTRIBUTE_HIDDEN});
}

}  // namespace
}  // namespace PAKU_3_1
