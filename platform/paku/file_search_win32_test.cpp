// Searches on Windows: drives, spellings, names that others reserve, and what a callback may do.

#include <windows.h>
#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/found_paths_test_support.h"

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

using internal::findIn;
using internal::FoundPaths;
using internal::kWholeTree;
using quiver_test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::wstring> findBelow(const std::wstring& directory,
                                    const std::wstring& name,
                                    int depth = kWholeTree) {
  FileSearch search;
  search.addSearchDirectory(Filename(directory), depth, 0);
  FoundPaths found;
  search.find(name, found);
  return found.paths();
}

TEST(FileSearchWindows, ADriveAloneIsItsRoot) {
  TempTree tree;
  tree.addFile("quiver-here-only");
  const quiver_test::ScopedDirectory here(tree.root());
  const std::wstring drive = tree.root().substr(0, 2);
  EXPECT_THAT(findBelow(drive, L"quiver-here-only", 0), IsEmpty());
  const std::wstring fromRoot = tree.path("quiver-here-only").substr(3);
  EXPECT_THAT(findBelow(drive, fromRoot, 0), ElementsAre(tree.path("quiver-here-only")));
}

TEST(FileSearchWindows, ADirectoryMayBeWrittenInAnyWay) {
  TempTree tree;
  const std::wstring path = tree.addFile("sub/a");
  std::wstring slashes = tree.path("sub");
  std::ranges::replace(slashes, L'\\', L'/');
  EXPECT_THAT(findBelow(slashes, L"a"), ElementsAre(slashes + L"\\a"));
  const std::wstring prefixed = L"\\\\?\\" + tree.path("sub");
  EXPECT_THAT(findBelow(prefixed, L"a"), ElementsAre(prefixed + L"\\a"));
  EXPECT_THAT(findBelow(tree.path("SUB"), L"a"), ElementsAre(tree.path("SUB") + L"\\a"));
  EXPECT_THAT(findBelow(tree.path("sub") + L". ", L"a"), ElementsAre(tree.path("sub") + L". \\a"));
}

TEST(FileSearchWindows, TakesEitherSeparatorInNames) {
  TempTree tree;
  tree.addFile("x/Proj/A.cpp");
  EXPECT_THAT(findIn(tree, L"C:\\work/proj\\a.cpp"), ElementsAre(L"x/Proj/A.cpp"));
  EXPECT_THAT(findIn(tree, L"//srv/share/PROJ/a.cpp"), ElementsAre(L"x/Proj/A.cpp"));
  EXPECT_THAT(findIn(tree, L"\\\\?\\C:\\proj\\a.cpp"), ElementsAre(L"x/Proj/A.cpp"));
}

TEST(FileSearchWindows, ComparesLettersBeyondAsciiWithoutCase) {
  TempTree tree;
  tree.addFile(L"\u00C9/\u00D1.c");
  EXPECT_THAT(findIn(tree, L"\u00F1.C"), ElementsAre(L"\u00C9/\u00D1.c"));
  EXPECT_THAT(findIn(tree, L"\u00E9\\\u00F1.c", 0), ElementsAre(L"\u00C9/\u00D1.c"));
}

TEST(FileSearchWindows, ReportsANameOnceWhateverTheCaseOfItsTails) {
  TempTree tree;
  tree.addFile("a/A/a");
  EXPECT_THAT(findIn(tree, L"A\\a\\A"), ElementsAre(L"a/A/a"));
}

TEST(FileSearchWindows, FilesThatAreLockedAreFound) {
  TempTree tree;
  tree.addUnreadableFile("sub/locked");
  EXPECT_THAT(findIn(tree, L"LOCKED"), ElementsAre(L"sub/locked"));
  EXPECT_THAT(findIn(tree, L"sub\\locked", 0), ElementsAre(L"sub/locked"));
}

/// Looks at what the search holds while it reports.
class Observer final : public IFileScanCallback {
 public:
  explicit Observer(const TempTree& tree) : m_tree(tree) {}

  bool onFileFound(const String& path) override {
    m_mode = GetThreadErrorMode();
    m_couldRemove = DeleteFileW(path.text().c_str()) && RemoveDirectoryW(m_tree.path("d").c_str());
    return true;
  }

  DWORD mode() const { return m_mode; }
  bool couldRemove() const { return m_couldRemove; }

 private:
  const TempTree& m_tree;
  DWORD m_mode = 0;
  bool m_couldRemove = false;
};

TEST(FileSearchWindows, HoldsNothingWhileItReports) {
  TempTree tree;
  tree.addFile("d/a");
  DWORD former = 0;
  SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, &former);
  Observer observer(tree);
  FileSearch search;
  search.addSearchDirectory(Filename(tree.root()), kWholeTree, 0);
  search.find(L"a", observer);
  EXPECT_EQ(observer.mode(), DWORD{SEM_NOGPFAULTERRORBOX});
  EXPECT_TRUE(observer.couldRemove());
  EXPECT_EQ(GetFileAttributesW(tree.path("d").c_str()), INVALID_FILE_ATTRIBUTES);
  SetThreadErrorMode(former, nullptr);
}

}  // namespace
}  // namespace PAKU_3_1
