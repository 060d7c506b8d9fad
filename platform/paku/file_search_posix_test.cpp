// Searching where letter case counts, names are bytes, and trees hold links, pipes and sockets.

#include <cstring>
#include <filesystem>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/file.h"
#include "paku/file_search.h"
#include "paku/found_paths_test_support.h"
#include "paku/index_settings.h"
#include "paku/scoped_user_test_support.h"
#include "paku/text_encoding.h"

#include "support/scoped_directory.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1 {
namespace {

using internal::findIn;
using internal::FoundPaths;
using internal::kWholeTree;
using quiver_test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(FileSearchCasePosix, ReportsExactNamesOfTheTreeFirst) {
  TempTree tree;
  tree.addFile("1/A.DLL");
  tree.addFile("2/a.dll");
  tree.addFile("3/a.Dll");
  tree.addFile("3/a.dll");
  EXPECT_THAT(findIn(tree, L"a.dll"), ElementsAre(L"2/a.dll", L"3/a.dll", L"1/A.DLL", L"3/a.Dll"));
}

TEST(FileSearchCasePosix, ReportsExactNamesFirstForEachTail) {
  TempTree tree;
  tree.addFile("1/A.DLL");
  tree.addFile("2/a.dll");
  EXPECT_THAT(findIn(tree, L"x/a.dll"), ElementsAre(L"2/a.dll", L"1/A.DLL"));
}

TEST(FileSearchCasePosix, ReportsFoldedNamesBeforeShorterTails) {
  TempTree tree;
  tree.addFile("x.cpp");
  tree.addFile("Proj/X.cpp");
  EXPECT_THAT(findIn(tree, L"proj/x.cpp"), ElementsAre(L"Proj/X.cpp", L"x.cpp"));
}

TEST(FileSearchCasePosix, GivesEachComponentItsRealSpelling) {
  TempTree tree;
  tree.addFile("Work/pROJ/x.CPP");
  tree.addFile("Work/Proj/X.cpp");
  tree.addFile("WORK/other/x.cpp");
  EXPECT_THAT(findIn(tree, L"work\\proj\\x.cpp", 0),
              ElementsAre(L"Work/Proj/X.cpp", L"Work/pROJ/x.CPP"));
}

TEST(FileSearchCasePosix, FoldsBehindAnExactFirstDirectory) {
  TempTree tree;
  tree.addFile("src/A.cpp");
  tree.addFile("src/a.cpp");
  EXPECT_THAT(findIn(tree, L"src/a.cpp", 0), ElementsAre(L"src/a.cpp", L"src/A.cpp"));
}

TEST(FileSearchCasePosix, IsThatOfAsciiLettersOnly) {
  TempTree tree;
  tree.addFile("\xC3\x89.c");
  EXPECT_THAT(findIn(tree, L"\u00E9.c"), IsEmpty());
  EXPECT_THAT(findIn(tree, L"\u00C9.C"), ElementsAre(L"\u00C9.c"));
  tree.addFile("a@[z");
  EXPECT_THAT(findIn(tree, L"A`{Z"), IsEmpty());
}

TEST(FileSearchCasePosix, IsAskedWithinOneDirectoryAfterTheOther) {
  TempTree tree;
  tree.addFile("1/A");
  tree.addFile("2/a");
  FileSearch search;
  search.addSearchDirectory(Filename(tree.path("1")), 0, 0);
  search.addSearchDirectory(Filename(tree.path("2")), 0, 0);
  FoundPaths found;
  search.find(L"a", found);
  EXPECT_THAT(found.paths(), ElementsAre(tree.path("1/A"), tree.path("2/a")));
}

TEST(FileSearchBackslashPosix, IsFirstACharacterThenASeparator) {
  TempTree tree;
  tree.addFile("src/a.cpp");
  tree.addFile("src\\a.cpp");
  tree.addFile("a.cpp");
  EXPECT_THAT(findIn(tree, L"src\\a.cpp", 0), ElementsAre(L"src\\a.cpp", L"src/a.cpp", L"a.cpp"));
}

TEST(FileSearchBackslashPosix, StaysACharacterInAnAbsoluteName) {
  TempTree tree;
  tree.addFile("we\\ird.c");
  tree.addFile("we/ird.c");
  EXPECT_THAT(findIn(tree, L"/x/we\\ird.c", 0), ElementsAre(L"we\\ird.c"));
}

TEST(FileSearchBackslashPosix, StaysACharacterInADirectory) {
  TempTree tree;
  tree.addFile("C:\\dir/a");
  const quiver_test::ScopedDirectory here(tree.root());
  FileSearch search;
  search.addSearchDirectory(Filename(L"C:\\dir"), 0, 0);
  FoundPaths found;
  search.find(L"a", found);
  EXPECT_THAT(found.paths(), ElementsAre(L"C:\\dir/a"));
}

TEST(FileSearchNamesPosix, MayHoldEveryByte) {
  TempTree tree;
  for (int byte = 1; byte < 256; ++byte) {
    if (byte == '/')
      continue;
    const std::string name = {'n', static_cast<char>(byte), '.', 'c'};
    const std::wstring path = tree.addFile("d\xFF/" + name, "x");
    const std::wstring sought = decode(name);
    EXPECT_THAT(findIn(tree, sought), testing::Contains(decode("d\xFF/" + name))) << byte;
    EXPECT_THAT(findIn(tree, L"/d\xDCFF/" + sought), testing::Contains(decode("d\xFF/" + name)));
    EXPECT_EQ(File(Filename(path)).lastOpStatus(), 0) << byte;
  }
}

TEST(FileSearchNamesPosix, MayBePatterns) {
  TempTree tree;
  tree.addFile("ol?");
  tree.addFile("*");
  EXPECT_THAT(findIn(tree, L"ol?"), ElementsAre(L"ol?"));
  EXPECT_THAT(findIn(tree, L"*"), ElementsAre(L"*"));
}

TEST(FileSearchNamesPosix, ThatNoFileCanHaveAreNotFound) {
  TempTree tree;
  tree.addFile("a");
  EXPECT_THAT(findIn(tree, std::wstring(256, L'a')), IsEmpty());
  EXPECT_THAT(findIn(tree, std::wstring(100000, L'a')), IsEmpty());
  EXPECT_THAT(findIn(tree, std::wstring{L'a', wchar_t{0xD800}}), IsEmpty());
  EXPECT_THAT(findIn(tree, std::wstring{L'a', L'\0'}), IsEmpty());
}

TEST(FileSearchNamesPosix, OfTheLongestKindAreFound) {
  TempTree tree;
  const std::string name(255, 'n');
  tree.addFile("sub/" + name);
  EXPECT_THAT(findIn(tree, std::wstring(255, L'N')), ElementsAre(L"sub/" + decode(name)));
}

TEST(FileSearchLinksPosix, ToFilesAreCandidates) {
  TempTree tree;
  tree.addFile("far/target");
  tree.addLink("near/a", "../far/target");
  EXPECT_THAT(findIn(tree, L"a"), ElementsAre(L"near/a"));
}

TEST(FileSearchLinksPosix, ThatLeadNowhereOrToDirectoriesAreNone) {
  TempTree tree;
  tree.addLink("1/a", "missing");
  tree.addLink("2/a", "a");
  tree.addDirectory("dir");
  tree.addLink("3/a", "../dir");
  EXPECT_THAT(findIn(tree, L"a"), IsEmpty());
  EXPECT_THAT(findIn(tree, L"A"), IsEmpty());
}

TEST(FileSearchLinksPosix, AreNotEnteredOnTheWayDown) {
  TempTree tree;
  tree.addFile("outside/a");
  tree.addFile("inside/sub/b");
  tree.addLink("inside/link", "../outside");
  tree.addLink("inside/loop", ".");
  tree.addLink("inside/sub/up", "..");
  FileSearch search;
  search.addSearchDirectory(Filename(tree.path("inside")), kWholeTree, 0);
  FoundPaths a;
  search.find(L"a", a);
  EXPECT_THAT(a.paths(), IsEmpty());
  FoundPaths b;
  search.find(L"b", b);
  EXPECT_THAT(b.paths(), ElementsAre(tree.path("inside/sub/b")));
}

// Intended: the name itself says where to go, and that is finite.
TEST(FileSearchLinksPosix, AreFollowedWhereTheNameSaysSo) {
  TempTree tree;
  tree.addFile("usr/lib/libc.so");
  tree.addLink("lib", "usr/lib");
  EXPECT_THAT(findIn(tree, L"/lib/libc.so", 0), ElementsAre(L"lib/libc.so"));
  EXPECT_THAT(findIn(tree, L"/LIB/libc.so", 0), ElementsAre(L"lib/libc.so"));
}

TEST(FileSearchLinksPosix, MayBeTheDirectoryThatIsSearched) {
  TempTree tree;
  tree.addFile("real/sub/a");
  FileSearch search;
  search.addSearchDirectory(Filename(tree.addLink("link", "real")), kWholeTree, 0);
  FoundPaths found;
  search.find(L"a", found);
  EXPECT_THAT(found.paths(), ElementsAre(tree.path("link/sub/a")));
}

TEST(FileSearchSpecialFilesPosix, AreReportedAndNeverOpened) {
  TempTree tree;
  tree.addUnreadableFile("1/a");
  tree.addDirectory("2");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, "a");
  const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
  {
    const quiver_test::ScopedDirectory here(tree.path("2"));  // a socket's path must be short
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  }
  EXPECT_THAT(findIn(tree, L"a"), ElementsAre(L"1/a", L"2/a"));
  close(fd);
}

TEST(FileSearchSpecialFilesPosix, AreNoDirectories) {
  TempTree tree;
  FileSearch search;
  search.addSearchDirectory(Filename(tree.addUnreadableFile("pipe")), kWholeTree, 0);
  FoundPaths found;
  search.find(L"a", found);
  EXPECT_THAT(found.paths(), IsEmpty());
}

TEST(FileSearchPermissionsPosix, LetTheScanGoOn) {
  TempTree tree;
  tree.addFile("1/closed/a");
  tree.addFile("2/a");
  fs::permissions(tree.path("1/closed"), fs::perms::none);
  fs::permissions(tree.root(), fs::perms(0755));
  const internal::OrdinaryUser user;
  ASSERT_TRUE(user.isOrdinary());
  EXPECT_THAT(findIn(tree, L"a"), ElementsAre(L"2/a"));
}

TEST(FileSearchDepthPosix, MayExceedWhatAPathCanSay) {
  const quiver_test::ScopedVariable inMemory("TMPDIR", "/dev/shm");  // where removal is quick
  TempTree tree;
  constexpr std::size_t kLevels = 5000;
  tree.addChain("d", kLevels, "a");
  std::wstring directory;
  for (std::size_t level = 0; level < kLevels; ++level) directory += L"d/";
  EXPECT_THAT(findIn(tree, L"a"), ElementsAre(directory + L"a"));
  EXPECT_THAT(findIn(tree, L"d/a"), ElementsAre(directory + L"a"));
  EXPECT_THAT(findIn(tree, L"D/A"), ElementsAre(directory + L"a"));
  EXPECT_THAT(findIn(tree, L"a", kLevels - 1), IsEmpty());
  EXPECT_THAT(findIn(tree, L"a", kLevels), ElementsAre(directory + L"a"));
}

TEST(FileSearchDepthPosix, OfLongNamesMayExceedWhatAPathCanSay) {
  TempTree tree;
  const std::string name(250, 'd');
  tree.addChain(name, 40, "a");
  EXPECT_THAT(findIn(tree, L"a"), ElementsAre(testing::SizeIs(40 * 251 + 1)));
}

/// Puts the directory `name` that many levels deeper, in directories that are called the same.
void sink(const TempTree& tree, const std::string& name, std::size_t levels) {
  const fs::path root = tree.root();
  for (std::size_t level = 0; level < levels; ++level) {
    fs::create_directory(root / "outer");
    fs::rename(root / name, root / "outer" / name);
    fs::rename(root / "outer", root / name);
  }
}

TEST(FileSearchDepthPosix, DoesNotKeepTheWayBackFromBeingFound) {
  const quiver_test::ScopedVariable inMemory("TMPDIR", "/dev/shm");
  TempTree tree;
  std::string deep = "d/a";
  for (int level = 0; level < 20; ++level) deep += "/x";
  tree.addFile(deep + "/f");
  tree.addFile("d/b/f");
  tree.addFile("d/b/c/f");
  sink(tree, "d", 2500);
  std::wstring above;
  for (int level = 0; level < 2500; ++level) above += L"d/";
  EXPECT_THAT(findIn(tree, L"f"),
              ElementsAre(above + decode(deep) + L"/f", above + L"d/b/f", above + L"d/b/c/f"));
}

TEST(FileSearchDescriptorsPosix, AreClosed) {
  TempTree tree;
  tree.addFile("x/y/a");
  const auto openCount = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  findIn(tree, L"x/y/a");
  findIn(tree, L"x/y/a");  // what an index of the tree needs stays open
  const auto before = openCount();
  for (int i = 0; i < 10; ++i) {
    findIn(tree, L"x/y/a");
    findIn(tree, L"X/Y/A", kWholeTree, 1);
  }
  EXPECT_EQ(openCount(), before);
}

/// Notes how the directories of a search were served.
class ServedDirectories final : public IScanWatcher, public IFileScanCallback {
 public:
  std::vector<std::pair<ScannedDirectory::State, std::uint64_t>> served;

  bool onFileFound(const String&) override { return true; }
  void onDirectory(const ScannedDirectory& directory) override {
    served.emplace_back(directory.state, directory.entries);
  }
};

/// Entries are counted by walks.
class FileSearchWatcherPosix : public testing::Test {
 protected:
  FileSearchWatcherPosix() {
    internal::setIndexSettings({internal::IndexUse::kNever, m_former.maxBytes});
  }
  ~FileSearchWatcherPosix() override { internal::setIndexSettings(m_former); }

  const internal::IndexSettings m_former = internal::indexSettings();
};

TEST_F(FileSearchWatcherPosix, HearsOfEntriesAndOfWhatCannotBeSearched) {
  using State = ScannedDirectory::State;
  TempTree tree;
  tree.addFile("dir/1");
  tree.addFile("dir/2");
  tree.addDirectory("empty");
  FileSearch search;
  for (const char* name : {"dir", "dir", "absent", "dir/1", "empty"})
    search.addSearchDirectory(Filename(String(tree.path(name).c_str()), 0, false), 0, 0);
  ServedDirectories watcher;
  search.find(String(L"a"), watcher, &watcher);
  EXPECT_THAT(watcher.served,
              ElementsAre(std::pair(State::kSearched, 2u),
                          std::pair(State::kRepeated, 0u),
                          std::pair(State::kMissing, 0u),
                          std::pair(State::kMissing, 0u),
                          std::pair(State::kSearched, 0u)));
}

}  // namespace
}  // namespace PAKU_3_1
