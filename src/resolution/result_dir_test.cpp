// Tests of resolution_context_mgr.h: result directories, and searches over environments.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "os/path_utils.h"
#include "resolution/resolution_context_mgr.h"
#include "resolution/resolution_context_mgr_fixture.h"
#include "search/test_doubles.h"
#include "support/callbacks.h"
#include "support/matchers.h"
#include "support/scoped_directory.h"

namespace QV_2_9 {
namespace {

using internal::DirEntry;
using internal::dirsOf;
using internal::entriesOf;
using quiver_test::RecordingFilesFound;
using quiver_test::ScopedDirectory;
using testing::ElementsAre;

TEST_F(ResolutionContextMgrTest, ResultDirServesItsOwnFolders) {
  const std::wstring dir = tree.path("res");
  const ObjectPtr<IResolutionContext> result = manager->getResultDirContext(dir.c_str());
  ASSERT_TRUE(result);
  EXPECT_EQ(result->getName(), dir);
  const ObjectPtr<ISearchEnv> made = env(result.get());
  EXPECT_THAT(entriesOf(made->getSearchDirs(scBinaryFiles)),
              ElementsAre(DirEntry{tree.path("res/binaries"), false, true}));
  EXPECT_THAT(entriesOf(made->getSearchDirs(scSymbolFiles)),
              ElementsAre(DirEntry{tree.path("res/symbols"), false, true},
                          DirEntry{tree.path("res/binaries"), false, true}));
  EXPECT_THAT(entriesOf(made->getSearchDirs(scSourceFiles)),
              ElementsAre(DirEntry{tree.path("res/sources"), true, true}));
  EXPECT_THAT(entriesOf(made->getSearchDirs(scAllFiles)),
              ElementsAre(DirEntry{tree.path("res/all"), true, true}, DirEntry{dir, false, true}));
  EXPECT_THAT(entriesOf(made->getArchiveSearchDirs(scSymbolFiles)),
              ElementsAre(DirEntry{tree.path("res/archive/symbols"), true, true}));
}

TEST_F(ResolutionContextMgrTest, ResultDirIsFiledAsItWasGiven) {
  const ScopedDirectory inTree(tree.root());
  const ObjectPtr<IResolutionContext> result = manager->getResultDirContext(L"x/../res");
  const ObjectPtr<ISearchEnv> made = env(result.get());
  EXPECT_EQ(dirsOf(made->getSearchDirs(scAllFiles)).back(), L"x/../res");
  EXPECT_EQ(result->getName(), tree.path("res"));
}

TEST_F(ResolutionContextMgrTest, SpellingsThatMeetAreOneResultDir) {
  const ScopedDirectory inTree(tree.root());
  const ObjectPtr<IResolutionContext> first =
      manager->getResultDirContext(tree.path("res").c_str());
  const ObjectPtr<IResolutionContext> second = manager->getResultDirContext(L"./res/");
  EXPECT_NE(first.get(), second.get());
  EXPECT_STREQ(first->getName(), second->getName());
  EXPECT_EQ(entriesOf(env(second.get())->getSearchDirs(scAllFiles)).size(), 2u);
}

TEST_F(ResolutionContextMgrTest, SpellingsThatDifferInCaseAreTwoResultDirs) {
  const ObjectPtr<IResolutionContext> lower =
      manager->getResultDirContext(tree.path("res").c_str());
  const ObjectPtr<IResolutionContext> upper =
      manager->getResultDirContext(tree.path("Res").c_str());
  EXPECT_STRNE(lower->getName(), upper->getName());
}

TEST_F(ResolutionContextMgrTest, SecondVisitSetsTheArchiveAgainButKeepsTheFolders) {
  const std::wstring dir = tree.path("res");
  const ObjectPtr<IResolutionContext> result = manager->getResultDirContext(dir.c_str());
  manager->setArchiveDir(result.get(), tree.path("elsewhere").c_str());
  file(result.get(), L" hidden_result_dir_key", L"/mine");
  manager->getResultDirContext(dir.c_str());
  EXPECT_THAT(binDirs(result.get()), ElementsAre(L"/mine"));
  EXPECT_THAT(dirsOf(env(result.get())->getArchiveSearchDirs(scAllFiles)),
              ElementsAre(tree.path("res/archive/all")));
}

TEST_F(ResolutionContextMgrTest, FoldersComeBackWhenTheyWereTakenOut) {
  const std::wstring dir = tree.path("res");
  const ObjectPtr<IResolutionContext> result = manager->getResultDirContext(dir.c_str());
  manager->setSearchDirs(result.get(), nullptr, L" hidden_result_dir_key");
  manager->getResultDirContext(dir.c_str());
  EXPECT_THAT(binDirs(result.get()), ElementsAre(tree.path("res/binaries")));
}

TEST_F(ResolutionContextMgrTest, OwnFoldersComeBeforeThoseOfCallersKeys) {
  const ObjectPtr<IResolutionContext> result =
      manager->getResultDirContext(tree.path("res").c_str());
  file(result.get(), L"!", L"/callers");
  EXPECT_THAT(binDirs(result.get()), ElementsAre(tree.path("res/binaries"), L"/callers"));
}

TEST_F(ResolutionContextMgrTest, OpeningAResultDirWritesNothing) {
  manager->getResultDirContext(tree.path("res").c_str());
  internal::FileStatus status;
  EXPECT_FALSE(internal::fileStatus(tree.path("res").c_str(), status));
}

// --- searches

TEST_F(ResolutionContextMgrTest, FileSearchUsesTheEnvironmentOfTheContext) {
  internal::ScriptedRoutines system;
  const std::wstring file = tree.addFile("res/binaries/app.dll", "app");
  RecordingFilesFound found;
  const ObjectPtr<IResolutionContext> result =
      manager->getResultDirContext(tree.path("res").c_str());
  manager->setFilesFoundCallback(result.get(), L"key", &found);
  const ObjectPtr<IFileSearch> search = manager->createFileSearch(result.get(), L"key", nullptr);
  EXPECT_THAT(search->findBinFile(L"app.dll", nullptr, nullptr),
              quiver_test::IsValidFile(file, 1, ssHighPrioritySearchDirs));
  EXPECT_EQ(found.calls().size(), 1u);
}

TEST_F(ResolutionContextMgrTest, FileSearchHandsTheEnvironmentInfoOn) {
  internal::ScriptedRoutines system;
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  info->setOSType(2);
  const ObjectPtr<IFileSearch> search = manager->createFileSearch(child.get(), nullptr, info);
  EXPECT_FALSE(search->findBinFile(L"app.dll", nullptr, nullptr));
  EXPECT_THAT(system.calls, testing::Contains(L"findByAbsoluteName(app.dll, 2)"));
}

}  // namespace
}  // namespace QV_2_9
