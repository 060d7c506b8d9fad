// Which files a search finds, and in which order.

#include "paku/file_search.h"

#include <stdexcept>
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

const std::wstring kSeparator(1, internal::separatorOf(internal::systemPathStyle()));

std::vector<std::wstring> findInAll(const std::vector<std::wstring>& directories,
                                    const wchar_t* name,
                                    int depth) {
  FileSearch search;
  for (const std::wstring& directory : directories)
    search.addSearchDirectory(Filename(directory), depth, 0);
  FoundPaths found;
  search.find(name, found);
  return found.paths();
}

TEST(FileSearch, LooksInTheDirectoryAloneAtDepthZero) {
  TempTree tree;
  tree.addFile("a.dll");
  tree.addFile("sub/a.dll");
  EXPECT_THAT(findIn(tree, L"a.dll", 0), ElementsAre(L"a.dll"));
}

TEST(FileSearch, LooksInTheWholeTreeWithoutADepth) {
  TempTree tree;
  tree.addFile("x/y/z/a.dll");
  tree.addFile("x/b.dll");
  EXPECT_THAT(findIn(tree, L"a.dll"), ElementsAre(L"x/y/z/a.dll"));
}

TEST(FileSearch, LooksAsManyLevelsDownAsItIsTold) {
  TempTree tree;
  tree.addFile("a");
  tree.addFile("1/a");
  tree.addFile("1/2/a");
  tree.addFile("1/2/3/a");
  EXPECT_THAT(findIn(tree, L"a", 1), ElementsAre(L"a", L"1/a"));
  EXPECT_THAT(findIn(tree, L"a", 2), ElementsAre(L"a", L"1/a", L"1/2/a"));
}

TEST(FileSearch, VisitsADirectoryBeforeItsSubdirectoriesAndTheseByName) {
  TempTree tree;
  for (const char* name : {"b/a.dll", "a/z/a.dll", "a/a.dll", "a.dll", "C/a.dll", "a-b/a.dll"})
    tree.addFile(name);
  EXPECT_THAT(
      findIn(tree, L"a.dll"),
      ElementsAre(L"a.dll", L"C/a.dll", L"a/a.dll", L"a/z/a.dll", L"a-b/a.dll", L"b/a.dll"));
}

TEST(FileSearch, TriesTheLongestTailInTheWholeTreeFirst) {
  TempTree tree;
  tree.addFile("x.cpp");
  tree.addFile("a/proj/x.cpp");
  tree.addFile("z/work/proj/x.cpp");
  EXPECT_THAT(findIn(tree, L"C:\\work\\proj\\x.cpp"),
              ElementsAre(L"z/work/proj/x.cpp", L"a/proj/x.cpp", L"x.cpp"));
}

TEST(FileSearch, FindsTheTailsBelowADirectoryAlone) {
  TempTree tree;
  tree.addFile("base/proj/x.cpp");
  tree.addFile("proj/x.cpp");
  tree.addFile("other/x.cpp");
  EXPECT_THAT(findIn(tree, L"/base/proj/x.cpp", 0), ElementsAre(L"base/proj/x.cpp", L"proj/x.cpp"));
}

TEST(FileSearch, DoesNotLeaveTheDirectory) {
  TempTree tree;
  tree.addFile("secret");
  tree.addFile("sub/public");
  EXPECT_THAT(findInAll({tree.path("sub")}, L"../secret", kWholeTree), IsEmpty());
  EXPECT_THAT(findInAll({tree.path("sub")}, L"x/../../secret", kWholeTree), IsEmpty());
  EXPECT_THAT(findInAll({tree.path("sub")}, L"../public", kWholeTree),
              ElementsAre(tree.path("sub/public")));
}

TEST(FileSearch, TakesPatternCharactersAsTheyAre) {
  TempTree tree;
  tree.addFile("old");
  EXPECT_THAT(findIn(tree, L"ol?"), IsEmpty());
  EXPECT_THAT(findIn(tree, L"*"), IsEmpty());
  EXPECT_THAT(findIn(tree, L"[o]ld"), IsEmpty());
}

TEST(FileSearch, FindsNothingWithoutANameOrADirectory) {
  TempTree tree;
  tree.addFile("a");
  EXPECT_THAT(findIn(tree, L""), IsEmpty());
  EXPECT_THAT(findIn(tree, L"a/"), IsEmpty());
  EXPECT_THAT(findInAll({}, L"a", kWholeTree), IsEmpty());
}

TEST(FileSearch, DoesNotTakeAnEmptyDirectoryForTheCurrentOne) {
  TempTree tree;
  tree.addFile("a");
  const quiver_test::ScopedDirectory here(tree.root());
  EXPECT_THAT(findInAll({L""}, L"a", kWholeTree), IsEmpty());
}

TEST(FileSearch, SkipsWhatIsNoDirectory) {
  TempTree tree;
  tree.addFile("dir/a");
  EXPECT_THAT(findInAll({tree.path("missing"), tree.addFile("file"), tree.path("dir")}, L"a", 0),
              ElementsAre(tree.path("dir/a")));
}

TEST(FileSearch, SearchesDirectoriesInTheOrderTheyWereAdded) {
  TempTree tree;
  tree.addFile("1/x/a");
  tree.addFile("2/a");
  EXPECT_THAT(findInAll({tree.path("2"), tree.path("1")}, L"x/a", kWholeTree),
              ElementsAre(tree.path("2/a"), tree.path("1/x/a")));
}

TEST(FileSearch, ReportsAPathOnce) {
  TempTree tree;
  tree.addFile("sub/a");
  EXPECT_THAT(findInAll({tree.root(), tree.root(), tree.path("sub")}, L"sub/a", kWholeTree),
              ElementsAre(tree.path("sub/a")));
}

TEST(FileSearch, ReportsTheDirectoryAsItWasGiven) {
  TempTree tree;
  tree.addFile("sub/a");
  const quiver_test::ScopedDirectory here(tree.root());
  EXPECT_THAT(findInAll({L"sub"}, L"a", 0), ElementsAre(L"sub" + kSeparator + L"a"));
  EXPECT_THAT(findInAll({L"./sub//"}, L"a", 0), ElementsAre(L"./sub//a"));
}

TEST(FileSearch, DoesNotReportDirectories) {
  TempTree tree;
  tree.addDirectory("a");
  tree.addFile("sub/a");
  EXPECT_THAT(findIn(tree, L"a"), ElementsAre(L"sub/a"));
  EXPECT_THAT(findIn(tree, L"a", 0), IsEmpty());
}

TEST(FileSearch, DirectoriesMayHoldMoreEntriesThanOneReadGives) {
  TempTree tree;
  for (int i = 0; i < 1200; ++i)
    tree.addFile("many/a-file-with-a-rather-long-name-" + std::to_string(i));
  tree.addFile("many/z");
  for (const wchar_t* last : {L"0", L"600", L"1199"}) {
    const std::wstring name = std::wstring(L"a-file-with-a-rather-long-name-") + last;
    EXPECT_THAT(findIn(tree, name), ElementsAre(L"many/" + name));
  }
  EXPECT_THAT(findIn(tree, L"Z"), ElementsAre(L"many/z"));
}

TEST(FileSearch, NamesMayBeLongerThanAPathCanBe) {
  TempTree tree;
  tree.addFile("a");
  std::wstring name;
  while (name.size() < 10000) name += L"no-such-directory/";
  EXPECT_THAT(findIn(tree, name + L"a"), ElementsAre(L"a"));
}

TEST(FileSearch, GivesTheRealSpellingOfANameThatIsWrittenInAnotherCase) {
  TempTree tree;
  tree.addFile("Work/Proj/X.cpp");
  EXPECT_THAT(findIn(tree, L"work/PROJ/x.CPP", 0), ElementsAre(L"Work/Proj/X.cpp"));
  EXPECT_THAT(findIn(tree, L"proj/x.cpp"), ElementsAre(L"Work/Proj/X.cpp"));
  EXPECT_THAT(findIn(tree, L"X.CPP"), ElementsAre(L"Work/Proj/X.cpp"));
}

TEST(FileSearch, FindsNamesBeyondAscii) {
  TempTree tree;
  tree.addFile(L"\u00E9/\U0001F600.c");
  EXPECT_THAT(findIn(tree, L"\U0001F600.c"), ElementsAre(L"\u00E9/\U0001F600.c"));
}

TEST(FileSearch, IsEmptyAgainAfterClearing) {
  TempTree tree;
  tree.addFile("a");
  FileSearch search;
  search.addSearchDirectory(Filename(tree.root()), 0, 0);
  search.clearSearchDirectories();
  FoundPaths found;
  search.find(L"a", found);
  EXPECT_THAT(found.paths(), IsEmpty());
}

/// Everything under the same name: places where a search may end.
class FileSearchEnd : public testing::TestWithParam<std::size_t> {};

TEST_P(FileSearchEnd, IsWhereTheCallbackSaysSo) {
  TempTree tree;
  for (const char* name : {"p/a", "1/p/a", "2/p/a", "a", "1/a", "3/a"}) tree.addFile(name);
  EXPECT_EQ(findIn(tree, L"p/a").size(), 6u);
  EXPECT_EQ(findIn(tree, L"p/a", kWholeTree, GetParam()).size(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Limits, FileSearchEnd, testing::Range<std::size_t>(1, 6));

TEST(FileSearch, EndsForAllDirectories) {
  TempTree tree;
  tree.addFile("1/a");
  tree.addFile("2/a");
  FileSearch search;
  search.addSearchDirectory(Filename(tree.path("1")), 0, 0);
  search.addSearchDirectory(Filename(tree.path("2")), 0, 0);
  FoundPaths found(1);
  search.find(L"a", found);
  EXPECT_THAT(found.paths(), ElementsAre(tree.path("1/a")));
}

/// Runs another search, and changes the one that runs, from inside.
class Meddler final : public IFileScanCallback {
 public:
  Meddler(const TempTree& tree, FileSearch& search) : m_tree(tree), m_search(search) {}

  bool onFileFound(const String& /*path*/) override {
    m_search.addSearchDirectory(Filename(m_tree.root()), kWholeTree, 0);
    m_counts.push_back(findIn(m_tree, L"a").size());
    m_search.clearSearchDirectories();
    return true;
  }

  const std::vector<std::size_t>& counts() const { return m_counts; }

 private:
  const TempTree& m_tree;
  FileSearch& m_search;
  std::vector<std::size_t> m_counts;
};

TEST(FileSearch, AllowsItsCallbackToSearchAndToChangeIt) {
  TempTree tree;
  tree.addFile("1/a");
  tree.addFile("2/a");
  FileSearch search;
  search.addSearchDirectory(Filename(tree.path("1")), 0, 0);
  search.addSearchDirectory(Filename(tree.path("2")), kWholeTree, 0);
  Meddler meddler(tree, search);
  search.find(L"a", meddler);
  EXPECT_THAT(meddler.counts(), ElementsAre(2u, 2u));
}

class Thrower final : public IFileScanCallback {
 public:
  bool onFileFound(const String& /*path*/) override { throw std::runtime_error("no"); }
};

TEST(FileSearch, LetsAnExceptionPass) {
  TempTree tree;
  tree.addFile("sub/a");
  FileSearch search;
  search.addSearchDirectory(Filename(tree.root()), kWholeTree, 0);
  Thrower thrower;
  EXPECT_THROW(search.find(L"a", thrower), std::runtime_error);
}

}  // namespace
}  // namespace PAKU_3_1
