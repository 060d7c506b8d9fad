// Composition of the directories, through a system that has only its pieces.

#include "os/os_common_routines.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "os/directory_recorder.h"
#include "os/path_utils.h"
#include "support/scoped_environment.h"

namespace QV_2_9 {
namespace {

using quiver_test::DirectoryRecorder;
using quiver_test::ScopedVariable;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class MinimalRoutines final : public OSCommonRoutines {
 public:
  bool findByAbsoluteName(const wchar_t*, ISearchResultsContainer&, std::int32_t) override {
    return false;
  }
  std::wstring mapFileName(const wchar_t* name, std::int32_t) override { return name; }
  void splitPathList(const wchar_t* list, std::vector<std::wstring>& out) override {
    splitString(list, L'|', out);
  }
  void addSystemBinaryDirs(ISearchDirectoryContainer& dirs) override {
    dirs.addDirectory(L"system", false);
  }
  void addCommonSystemDirs(ISearchDirectoryContainer& dirs) override {
    dirs.addDirectory(L"common", false);
  }
  void addDriverDirs(ISearchDirectoryContainer& dirs) override {
    dirs.addDirectory(L"drivers", true);
  }
  void addSymbolPathDirs(ISearchDirectoryContainer& dirs) override {
    dirs.addDirectory(L"symbols", false);
  }

  using OSCommonRoutines::addDirsFromEnvironment;
};

TEST(OSCommonRoutines, BinariesHaveSystemThenCommonThenDriverDirectories) {
  MinimalRoutines routines;
  DirectoryRecorder dirs;
  routines.addBinSystemDirs(dirs);
  EXPECT_THAT(dirs.added(),
              ElementsAre(Pair(L"system", false), Pair(L"common", false), Pair(L"drivers", true)));
}

TEST(OSCommonRoutines, SymbolsHaveSymbolPathThenCommonThenDriverDirectories) {
  MinimalRoutines routines;
  DirectoryRecorder dirs;
  routines.addSymSystemDirs(dirs);
  EXPECT_THAT(dirs.added(),
              ElementsAre(Pair(L"symbols", false), Pair(L"common", false), Pair(L"drivers", true)));
}

TEST(OSCommonRoutines, SourcesHaveNoSystemDirectories) {
  MinimalRoutines routines;
  DirectoryRecorder dirs;
  routines.addSrcSystemDirs(dirs);
  EXPECT_THAT(dirs.added(), IsEmpty());
}

TEST(OSCommonRoutines, KnowsNoSymbolServers) {
  MinimalRoutines routines;
  EXPECT_FALSE(routines.isSymbolServerPath(L"srv*c:\\cache"));
  EXPECT_FALSE(routines.isSymbolServerPath(nullptr));
}

class UntouchedProgress final : public ISymbolDownloadProgress {
 public:
  void start(std::int32_t) override { ADD_FAILURE(); }
  void progress(std::int32_t) override { ADD_FAILURE(); }
  void finish() override { ADD_FAILURE(); }
  bool isCanceled() override {
    ADD_FAILURE();
    return false;
  }
};

TEST(OSCommonRoutines, DownloadsNothingAndLeavesTheArgumentsAlone) {
  MinimalRoutines routines;
  UntouchedProgress progress;
  EXPECT_EQ(routines.downloadSymbolFile(L"a.exe", {L"srv*c:\\cache"}, &progress), L"");
  EXPECT_EQ(routines.downloadSymbolFile(nullptr, {}, nullptr), L"");
  EXPECT_EQ(routines.downloadSymbolFileFromEnvironment(L"a.exe", &progress), L"");
  EXPECT_EQ(routines.downloadSymbolFileFromEnvironment(nullptr, nullptr), L"");
}

TEST(AddDirsFromEnvironment, AddsNothingForAnUnsetVariable) {
  ScopedVariable variable("QUIVER_TEST_DIRS");
  MinimalRoutines routines;
  DirectoryRecorder dirs;
  EXPECT_FALSE(routines.addDirsFromEnvironment(L"QUIVER_TEST_DIRS", dirs));
  EXPECT_THAT(dirs.added(), IsEmpty());
}

TEST(AddDirsFromEnvironment, AddsNothingForAnEmptyVariable) {
  ScopedVariable variable("QUIVER_TEST_DIRS", "");
  MinimalRoutines routines;
  DirectoryRecorder dirs;
  EXPECT_FALSE(routines.addDirsFromEnvironment(L"QUIVER_TEST_DIRS", dirs));
  EXPECT_THAT(dirs.added(), IsEmpty());
}

TEST(AddDirsFromEnvironment, AddsEveryElementInOrderEmptyOnesToo) {
  ScopedVariable variable("QUIVER_TEST_DIRS", "b||a|");
  MinimalRoutines routines;
  DirectoryRecorder dirs;
  EXPECT_TRUE(routines.addDirsFromEnvironment(L"QUIVER_TEST_DIRS", dirs));
  EXPECT_THAT(dirs.added(), ElementsAre(Pair(L"b", false), Pair(L"", false), Pair(L"a|", false)));
}

TEST(AddDirsFromEnvironment, IsTrueWhenOneElementWasAccepted) {
  ScopedVariable variable("QUIVER_TEST_DIRS", "a|b|c");
  MinimalRoutines routines;
  DirectoryRecorder dirs;
  dirs.accepts = [](const std::wstring& dir) { return dir == L"b"; };
  EXPECT_TRUE(routines.addDirsFromEnvironment(L"QUIVER_TEST_DIRS", dirs));
  EXPECT_EQ(dirs.added().size(), 3u);
}

TEST(AddDirsFromEnvironment, IsFalseWhenNoneWasAccepted) {
  ScopedVariable variable("QUIVER_TEST_DIRS", "a|b");
  MinimalRoutines routines;
  DirectoryRecorder dirs;
  dirs.accepts = [](const std::wstring&) { return false; };
  EXPECT_FALSE(routines.addDirsFromEnvironment(L"QUIVER_TEST_DIRS", dirs));
  EXPECT_EQ(dirs.added().size(), 2u);
}

}  // namespace
}  // namespace QV_2_9
