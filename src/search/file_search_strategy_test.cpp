// Tests of the three strategies: what each step offers, in which order, under which step value.

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "quiver/environment_info.h"
#include "quiver/ref_count.h"
#include "quiver/search_dirs.h"
#include "quiver/search_env.h"
#include "search/bin_file_search_strategy.h"
#include "search/src_file_search_strategy.h"
#include "search/sym_file_search_strategy.h"
#include "search/test_doubles.h"
#include "support/callbacks.h"
#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

using internal::Candidate;
using internal::RecordingResults;
using internal::ScriptedRoutines;
using Calls = std::vector<std::wstring>;
using Candidates = std::vector<Candidate>;

/// A validator that only has an address.
class NoValidator final : public IValidatorInternal {
 public:
  ObjectPtr<IValidatedFile> validate(const wchar_t*) override { return nullptr; }
  ObjectPtr<IValidatedFile> validateInStep(const wchar_t*, std::uint32_t) override {
    return nullptr;
  }
};

class StrategyTest : public testing::Test {
 protected:
  StrategyTest() {
    m_env->setSearchDirs(m_dirs);
    m_env->setArchiveSearchDirs(m_archives);
  }

  BinFileSearchStrategy bin(const wchar_t* name) { return {m_env.get(), name, &m_validator}; }
  SrcFileSearchStrategy src(const wchar_t* name, const wchar_t* binary) {
    return {m_env.get(), name, binary, L"c0ffee", &m_validator};
  }
  SymFileSearchStrategy sym(const wchar_t* name, const wchar_t* binary) {
    return {m_env.get(), name, binary, L"c0ffee", &m_validator, nullptr};
  }
  void addDir(search_category_t category, const std::string& name, bool recursive, bool high) {
    m_dirs->addSearchDir(category, m_tree.path(name).c_str(), recursive, high);
  }
  void setOSType(std::int32_t type) {
    const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
    info->setOSType(type);
    m_env->setEnvironmentInfo(info);
  }

  quiver_test::TempTree m_tree;
  ScriptedRoutines m_routines;
  RecordingResults m_results;
  NoValidator m_validator;
  ObjectPtr<IEditableSearchDirContainer> m_dirs = IEditableSearchDirContainer::create();
  ObjectPtr<IEditableSearchDirContainer> m_archives = IEditableSearchDirContainer::create();
  ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
};

/// A caller's own container, whose first entry has no text.
class DirsWithoutText final : public RefCountImpl<ISearchDirContainer> {
 public:
  explicit DirsWithoutText(std::wstring dir) : m_dir(std::move(dir)) {}

  ObjectPtr<ISearchDirIterator> createIterator(search_category_t) override {
    return new Iterator(m_dir);
  }

 private:
  class Iterator final : public RefCountImpl<ISearchDirIterator> {
   public:
    explicit Iterator(std::wstring dir) : m_dir(std::move(dir)) {}
    void reset() override { m_position = 0; }
    bool next() override { return ++m_position < 2; }
    bool get(const wchar_t*& dir, bool& recursive, bool& highPriority) override {
      dir = m_position == 1 ? m_dir.c_str() : nullptr;
      recursive = false;
      highPriority = true;
      return m_position < 2;
    }

   private:
    const std::wstring m_dir;
    int m_position = 0;
  };

  const std::wstring m_dir;
};

TEST_F(StrategyTest, PassesOverDirectoriesWithoutText) {
  const std::wstring file = m_tree.addFile("dir/a.pdb");
  const std::wstring copy = m_tree.addFile("archive/a.pdb/1/a.pdb");
  m_env->setSearchDirs(new DirsWithoutText(m_tree.path("dir")));
  m_env->setArchiveSearchDirs(new DirsWithoutText(m_tree.path("archive")));
  auto strategy = sym(L"a.pdb", L"a.exe");
  strategy.searchArchiveDirs(m_results);
  EXPECT_EQ(m_results.candidates.at(0), (Candidate{copy, 0x10001}));
  strategy.searchHighPriorityDirs(m_results);
  EXPECT_EQ(m_results.candidates.back(), (Candidate{file, 2}));
  EXPECT_EQ(m_routines.calls.back(), L"download(a.exe, " + m_tree.path("dir") + L")");
}

TEST_F(StrategyTest, MapsTheNameOnceForTheAnalysedSystem) {
  setOSType(2);
  m_routines.map = [](const std::wstring& name) { return L"/mapped/" + name; };
  auto strategy = bin(L"a.dll");
  EXPECT_EQ(m_routines.calls, Calls{L"mapFileName(a.dll, 2)"});
  strategy.lookupAbsoluteName(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{L"/mapped/a.dll", 3}}));
}

TEST_F(StrategyTest, MapsNothingWithoutEnvironmentInformation) {
  bin(L"a.dll");
  EXPECT_TRUE(m_routines.calls.empty());
}

TEST_F(StrategyTest, TakesNullTextsAsEmptyOnes) {
  SymFileSearchStrategy strategy(nullptr, nullptr, nullptr, nullptr, &m_validator, nullptr);
  strategy.lookupAbsoluteName(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{L"", 3}}));
}

TEST_F(StrategyTest, ScansNothingWithoutAnEnvironment) {
  SymFileSearchStrategy strategy(nullptr, L"a.pdb", L"", L"", &m_validator, nullptr);
  strategy.searchArchiveDirs(m_results);
  strategy.searchHighPriorityDirs(m_results);
  strategy.searchLowPriorityDirs(m_results);
  EXPECT_TRUE(m_results.candidates.empty());
  EXPECT_TRUE(m_routines.calls.empty());
}

TEST_F(StrategyTest, LooksIntoTheFoldersOfAnArchiveThatBearTheFileName) {
  m_tree.addFile("arch/a.dll.bak/a.dll");
  m_tree.addFile("arch/other/a.dll");
  m_tree.addFile("all/x/a.dll/a.dll");
  const std::wstring archived = m_tree.addFile("arch/a.dll/0123/deep/a.dll");
  const std::wstring common = m_tree.addFile("all/a.dll/0123/a.dll");
  m_archives->addSearchDir(scBinaryFiles, m_tree.path("arch").c_str(), false, false);
  m_archives->addSearchDir(scAllFiles, m_tree.path("all").c_str(), false, true);
  bin(L"C:\\app\\a.dll").searchArchiveDirs(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{archived, 0x10001}, {common, 0x10001}}));
}

TEST_F(StrategyTest, TakesNoArchiveFromAnEmptyText) {
  m_tree.addFile("a.dll/0123/a.dll");
  const quiver_test::ScopedDirectory inTree(m_tree.root());
  m_archives->addSearchDir(scBinaryFiles, L"", false, false);
  bin(L"a.dll").searchArchiveDirs(m_results);
  EXPECT_EQ(m_results.candidates, Candidates());
}

TEST_F(StrategyTest, NeverScansAnArchiveItself) {
  m_tree.addFile("arch/a.dll");
  m_tree.addFile("arch/sub/a.dll");
  m_archives->addSearchDir(scBinaryFiles, m_tree.path("arch").c_str(), true, true);
  bin(L"a.dll").searchArchiveDirs(m_results);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(StrategyTest, SearchesPlainDirectoriesOfAListBeforeItsTreesAndTheCategoryFirst) {
  const std::wstring tree = m_tree.addFile("tree/sub/a.c");
  const std::wstring plain = m_tree.addFile("plain/a.c");
  const std::wstring allPlain = m_tree.addFile("allplain/a.c");
  const std::wstring allTree = m_tree.addFile("alltree/sub/a.c");
  addDir(scSourceFiles, "tree", true, true);
  addDir(scSourceFiles, "plain", false, true);
  addDir(scAllFiles, "alltree", true, true);
  addDir(scAllFiles, "allplain", false, true);
  addDir(scBinaryFiles, "plain", false, true);
  src(L"a.c", L"").searchHighPriorityDirs(m_results);
  EXPECT_EQ(m_results.candidates,
            (Candidates{{plain, 2}, {tree, 0x10002}, {allPlain, 2}, {allTree, 0x10002}}));
}

TEST_F(StrategyTest, KeepsTheTwoPrioritiesApart) {
  const std::wstring high = m_tree.addFile("high/a.c");
  const std::wstring low = m_tree.addFile("low/a.c");
  const std::wstring lowTree = m_tree.addFile("lowtree/sub/a.c");
  addDir(scSourceFiles, "lowtree", true, false);
  addDir(scSourceFiles, "low", false, false);
  addDir(scSourceFiles, "high", false, true);
  auto strategy = src(L"a.c", L"");
  strategy.searchHighPriorityDirs(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{high, 2}}));
  m_results.candidates.clear();
  strategy.searchLowPriorityDirs(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{low, 6}, {lowTree, 0x10006}}));
}

TEST_F(StrategyTest, GoesOnWithTheNextScanOfAStepAfterAConfirmedFile) {
  const std::wstring confirmed = m_tree.addFile("one/a.c");
  m_tree.addFile("two/a.c");
  const std::wstring other = m_tree.addFile("all/a.c");
  addDir(scSourceFiles, "one", false, true);
  addDir(scSourceFiles, "two", false, true);
  addDir(scAllFiles, "all", false, true);
  m_results.stopAt = confirmed;
  src(L"a.c", L"").searchHighPriorityDirs(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{confirmed, 2}, {other, 2}}));
}

TEST_F(StrategyTest, OffersAFileOfTheSameDirectoryInBothListsTwice) {
  const std::wstring path = m_tree.addFile("both/a.c");
  addDir(scSourceFiles, "both", false, true);
  addDir(scAllFiles, "both", false, true);
  src(L"a.c", L"").searchHighPriorityDirs(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{path, 2}, {path, 2}}));
}

TEST_F(StrategyTest, LooksForAnAbsoluteNameWithoutItsDrive) {
  const std::wstring whole = m_tree.addFile("s/work/proj/x.cpp");
  addDir(scSourceFiles, "s", false, true);
  src(L"C:\\work\\proj\\x.cpp", L"").searchHighPriorityDirs(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{whole, 2}}));
}

TEST_F(StrategyTest, ReadsTheEnvironmentAfreshInEveryStep) {
  auto strategy = src(L"a.c", L"");
  strategy.searchHighPriorityDirs(m_results);
  const std::wstring path = m_tree.addFile("late/a.c");
  addDir(scSourceFiles, "late", false, true);
  strategy.searchHighPriorityDirs(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{path, 2}}));
}

TEST_F(StrategyTest, OffersTheNameItselfInStepThree) {
  m_results.answer = false;
  EXPECT_FALSE(src(L"/x/a.c", L"").lookupAbsoluteName(m_results));
  m_results.answer = true;
  EXPECT_TRUE(sym(L"/x/a.pdb", L"").lookupAbsoluteName(m_results));
  EXPECT_EQ(m_results.candidates, (Candidates{{L"/x/a.c", 3}, {L"/x/a.pdb", 3}}));
  EXPECT_TRUE(m_routines.calls.empty());
}

TEST_F(StrategyTest, TranslatesABinaryNameThatIsNoNewFileHere) {
  m_results.answer = false;
  bin(L"\\Device\\X\\a.dll").lookupAbsoluteName(m_results);
  EXPECT_EQ(m_routines.calls, Calls{L"findByAbsoluteName(\\Device\\X\\a.dll, 0)"});
}

TEST_F(StrategyTest, TranslatesNoBinaryNameThatWasFound) {
  EXPECT_TRUE(bin(L"/x/a.dll").lookupAbsoluteName(m_results));
  EXPECT_TRUE(m_routines.calls.empty());
}

TEST_F(StrategyTest, TellsTheTranslationWhichSystemWasAnalysed) {
  setOSType(2);
  m_results.answer = false;
  bin(L"/x/a.dll").lookupAbsoluteName(m_results);
  EXPECT_EQ(m_routines.calls.back(), L"findByAbsoluteName(/x/a.dll, 2)");
}

TEST_F(StrategyTest, ScansTheSystemDirectoriesOfItsCategory) {
  const std::wstring path = m_tree.addFile("sys/a.dll");
  m_routines.systemDirs = {{m_tree.path("sys"), false}};
  bin(L"a.dll").searchSystemDirs(m_results);
  src(L"a.dll", L"").searchSystemDirs(m_results);
  EXPECT_EQ(m_routines.calls, (Calls{L"addBinSystemDirs", L"addSrcSystemDirs"}));
  EXPECT_EQ(m_results.candidates, (Candidates{{path, 4}, {path, 4}}));
}

TEST_F(StrategyTest, FilesARecursiveSystemDirectoryUnderThePlainStep) {
  const std::wstring path = m_tree.addFile("sys/deep/a.pdb");
  m_routines.systemDirs = {{m_tree.path("sys"), true}};
  sym(L"a.pdb", L"").searchSystemDirs(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{path, 4}}));
}

TEST_F(StrategyTest, FindsAnAbsoluteNameInSystemDirectories) {
  const std::wstring path = m_tree.addFile("sys/a.dll");
  m_routines.systemDirs = {{m_tree.path("sys"), false}};
  bin(L"C:\\windows\\a.dll").searchSystemDirs(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{path, 4}}));
}

TEST_F(StrategyTest, LooksForNothingAroundABinary) {
  const std::wstring path = m_tree.addFile("a.dll");
  bin(path.c_str()).lookupAroundBinary(m_results);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(StrategyTest, WalksFromTheBinaryToTheRootWithoutStopping) {
  const std::wstring beside = m_tree.addFile("x/bin/a.c");
  const std::wstring above = m_tree.addFile("x/a.c");
  const std::wstring top = m_tree.addFile("a.c");
  m_results.stopAt = beside;
  src(L"a.c", m_tree.path("x/bin/app").c_str()).lookupAroundBinary(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{beside, 5}, {above, 5}, {top, 5}}));
}

TEST_F(StrategyTest, WalksNowhereWithoutABinary) {
  m_tree.addFile("a.c");
  src(L"a.c", L"").lookupAroundBinary(m_results);
  src(L"a.c", L"app.exe").lookupAroundBinary(m_results);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(StrategyTest, GuessesTheSymbolFileFromTheBinaryName) {
  sym(L"other.pdb", L"C:\\bin\\app.exe").lookupAroundBinary(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{L"C:\\bin\\app.pdb", 5}}));
}

TEST_F(StrategyTest, GuessesNothingWhenTheNamesAgree) {
  sym(L"app.pdb", L"C:\\bin\\app.exe").lookupAroundBinary(m_results);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(StrategyTest, GuessesWhenTheNamesDifferInCase) {
  sym(L"App.pdb", L"C:\\bin\\app.exe").lookupAroundBinary(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{L"C:\\bin\\app.pdb", 5}}));
}

TEST_F(StrategyTest, GuessesFromAnEmptyBinaryName) {
  sym(L"app.pdb", L"").lookupAroundBinary(m_results);
  EXPECT_EQ(m_results.candidates, (Candidates{{L".pdb", 5}}));
}

TEST_F(StrategyTest, KeepsSymbolServersOutOfSymbolScansOnly) {
  auto symbols = sym(L"a.pdb", L"");
  auto sources = src(L"a.c", L"");
  auto binaries = bin(L"a.dll");
  EXPECT_TRUE(symbols.isExcluded(L"srv*D:\\cache*https://host"));
  EXPECT_FALSE(symbols.isExcluded(L"C:\\symbols"));
  EXPECT_FALSE(sources.isExcluded(L"srv*D:\\cache*https://host"));
  EXPECT_FALSE(binaries.isExcluded(L"srv*D:\\cache*https://host"));
}

TEST_F(StrategyTest, DownloadsFromTheEntriesOfTheStepsPriority) {
  m_dirs->addSearchDir(scSymbolFiles, L"srv*low", false, false);
  m_dirs->addSearchDir(scSymbolFiles, L"srv*high", true, true);
  m_dirs->addSearchDir(scSymbolFiles, L"/plain", false, true);
  m_dirs->addSearchDir(scAllFiles, L"srv*common", false, true);
  m_routines.download = L"/cache/app.pdb";
  auto strategy = sym(L"app.pdb", L"C:\\bin\\app.exe");
  strategy.searchHighPriorityDirs(m_results);
  strategy.searchLowPriorityDirs(m_results);
  EXPECT_EQ(m_routines.calls,
            (Calls{L"download(C:\\bin\\app.exe, srv*high, /plain)",
                   L"download(C:\\bin\\app.exe, srv*low)"}));
  EXPECT_EQ(m_results.candidates, (Candidates{{L"/cache/app.pdb", 2}, {L"/cache/app.pdb", 6}}));
}

TEST_F(StrategyTest, AsksForNoDownloadWithoutSymbolDirectories) {
  m_dirs->addSearchDir(scAllFiles, L"srv*common", false, true);
  auto strategy = sym(L"app.pdb", L"C:\\bin\\app.exe");
  strategy.searchHighPriorityDirs(m_results);
  EXPECT_TRUE(m_routines.calls.empty());
}

TEST_F(StrategyTest, DownloadsFromTheEnvironmentAfterTheSystemDirectories) {
  m_routines.environmentDownload = L"/cache/app.pdb";
  sym(L"app.pdb", L"C:\\bin\\app.exe").searchSystemDirs(m_results);
  EXPECT_EQ(m_routines.calls,
            (Calls{L"addSymSystemDirs", L"downloadFromEnvironment(C:\\bin\\app.exe)"}));
  EXPECT_EQ(m_results.candidates, (Candidates{{L"/cache/app.pdb", 4}}));
}

TEST_F(StrategyTest, AddsNoEmptyDownload) {
  m_dirs->addSearchDir(scSymbolFiles, L"srv*high", false, true);
  auto strategy = sym(L"app.pdb", L"");
  strategy.searchHighPriorityDirs(m_results);
  strategy.searchSystemDirs(m_results);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(StrategyTest, HandsTheProgressObjectOnUntouched) {
  class Progress final : public ISymbolDownloadProgress {
    void start(std::int32_t) override {}
    void progress(std::int32_t) override {}
    void finish() override {}
    bool isCanceled() override { return false; }
  } progress;
  SymFileSearchStrategy strategy(m_env.get(), L"a.pdb", L"b", L"", &m_validator, &progress);
  strategy.searchSystemDirs(m_results);
  EXPECT_EQ(m_routines.progressSeen, &progress);
}

TEST_F(StrategyTest, KnowsItsCategory) {
  EXPECT_EQ(bin(L"a").getCategory(), scBinaryFiles);
  EXPECT_EQ(sym(L"a", L"").getCategory(), scSymbolFiles);
  EXPECT_EQ(src(L"a", L"").getCategory(), scSourceFiles);
}

}  // namespace
}  // namespace QV_2_9
