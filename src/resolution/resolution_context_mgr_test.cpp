// Tests of resolution_context_mgr.h: contexts, their parents, what is filed for them, and the
// directories of environments.

#include "resolution/resolution_context_mgr.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "os/path_utils.h"
#include "resolution/resolution_context_mgr_fixture.h"
#include "support/callbacks.h"
#include "support/scoped_directory.h"

namespace QV_2_9 {
namespace {

using internal::DirEntry;
using internal::dirsOf;
using internal::entriesOf;
using quiver_test::RecordingFilesFound;
using quiver_test::ScopedDirectory;
using testing::ElementsAre;
using testing::IsEmpty;

// --- the one manager

TEST_F(ResolutionContextMgrTest, ThereIsOneManager) {
  const ObjectPtr<IResolutionContextMgr> again = IResolutionContextMgr::create();
  EXPECT_EQ(again.get(), manager.get());
  EXPECT_EQ(manager->getVersion(), 1);
  EXPECT_EQ(manager->addRef(), 3u);
  EXPECT_EQ(manager->release(), 2u);
}

TEST_F(ResolutionContextMgrTest, ForgetsEverythingWithItsLastReference) {
  RecordingFilesFound found;
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scBinaryFiles, L"/dirs", false, false);
  manager->setSearchDirs(child.get(), dirs, L"key");
  manager->setArchiveDir(child.get(), L"/archive");
  manager->setFilesFoundCallback(child.get(), L"key", &found);
  manager->setParentContext(child.get(), parent.get());
  file(parent.get(), L"key", L"/parent");

  manager = nullptr;
  EXPECT_EQ(dirs->addRef(), 2u) << "only this test holds the container now";
  dirs->release();
  manager = IResolutionContextMgr::create();
  expectNothingConfigured(*env(child.get()));
  EXPECT_EQ(manager->archiveFile(child.get(), tree.addFile("a.dll").c_str(), scBinaryFiles),
            arNoArchiveDir);
}

TEST_F(ResolutionContextMgrTest, LivesAsLongAsAnyReference) {
  file(child.get(), L"key", L"/dirs");
  ObjectPtr<IResolutionContextMgr> second = IResolutionContextMgr::create();
  manager = nullptr;
  second = IResolutionContextMgr::create();
  EXPECT_THAT(
      dirsOf(second->createSearchEnv(child.get(), L"key", nullptr)->getSearchDirs(scBinaryFiles)),
      ElementsAre(L"/dirs"));
}

TEST_F(ResolutionContextMgrTest, EnvironmentOutlivesTheManager) {
  RecordingFilesFound found;
  file(child.get(), L"key", L"/dirs");
  manager->setFilesFoundCallback(child.get(), L"key", &found);
  const ObjectPtr<ISearchEnv> made = env(child.get());
  manager = nullptr;
  EXPECT_THAT(dirsOf(made->getSearchDirs(scBinaryFiles)), ElementsAre(L"/dirs"));
  EXPECT_EQ(made->getFilesFoundCallback().getCallback(), &found);
}

// --- contexts

TEST_F(ResolutionContextMgrTest, UserContextBearsTheLoginName) {
  EXPECT_EQ(manager->createUserContext()->getName(), getUserName());
  EXPECT_NE(manager->createUserContext().get(), manager->createUserContext().get());
}

TEST_F(ResolutionContextMgrTest, ContextBearsTheCanonicalAbsolutePath) {
  const ScopedDirectory inTree(tree.root());
  EXPECT_EQ(manager->createContext(L"x/./y/../res", true)->getName(), tree.path("x/res"));
  EXPECT_EQ(manager->createContext(tree.path("res/").c_str(), true)->getName(), tree.path("res"));
  EXPECT_EQ(manager->createContext(L"res", false)->getName(), tree.path("res"));
  EXPECT_EQ(manager->createContext(L"res", true)->getVersion(), 1);
}

TEST_F(ResolutionContextMgrTest, NoPathGivesNoContext) {
  EXPECT_FALSE(manager->createContext(nullptr, true));
  EXPECT_FALSE(manager->createContext(L"", true));
  EXPECT_FALSE(manager->createContext(L"", false));
  EXPECT_FALSE(manager->getResultDirContext(nullptr));
  EXPECT_FALSE(manager->getResultDirContext(L""));
}

TEST_F(ResolutionContextMgrTest, EqualNamesAreOneContext) {
  file(child.get(), L"key", L"/dirs");
  EXPECT_THAT(binDirs(context(L"child").get()), ElementsAre(L"/dirs"));
  EXPECT_THAT(binDirs(context(L"Child").get()), IsEmpty());
}

TEST_F(ResolutionContextMgrTest, NullContextAndNullNameStandForTheEmptyName) {
  RecordingFilesFound found;
  file(nullptr, L"key", L"/dirs");
  EXPECT_TRUE(manager->setFilesFoundCallback(context(nullptr).get(), L"key", &found));
  const ObjectPtr<ISearchEnv> made = env(context(L"").get());
  EXPECT_THAT(dirsOf(made->getSearchDirs(scBinaryFiles)), ElementsAre(L"/dirs"));
  EXPECT_EQ(made->getFilesFoundCallback().getCallback(), &found);
}

TEST_F(ResolutionContextMgrTest, NullContextGivesAnEmptyEnvironment) {
  RecordingFilesFound found;
  file(nullptr, L"key", L"/dirs");
  manager->setArchiveDir(nullptr, L"/archive");
  manager->setFilesFoundCallback(nullptr, L"key", &found);
  expectNothingConfigured(*env(nullptr));
  EXPECT_EQ(manager->archiveFile(nullptr, tree.addFile("a.dll").c_str(), scBinaryFiles),
            arNoArchiveDir);
}

TEST_F(ResolutionContextMgrTest, ContextIsBorrowed) {
  manager->setParentContext(child.get(), parent.get());
  file(child.get(), L"key", L"/dirs");
  env(child.get());
  manager->archiveFile(child.get(), L"a.dll", scBinaryFiles);
  EXPECT_EQ(child->addRef(), 2u);
  child->release();
  EXPECT_EQ(parent->addRef(), 2u);
  parent->release();
}

// --- parents

TEST_F(ResolutionContextMgrTest, ChildDirsComeBeforeThoseOfItsAncestors) {
  EXPECT_TRUE(manager->setParentContext(parent.get(), grandparent.get()));
  EXPECT_TRUE(manager->setParentContext(child.get(), parent.get()));
  file(grandparent.get(), L"a", L"/g");
  file(parent.get(), L"z", L"/p2");
  file(parent.get(), L"b", L"/p1");
  file(child.get(), L"y", L"/c3");
  file(child.get(), L" x", L"/c1");
  file(child.get(), L"X", L"/c2");
  EXPECT_THAT(binDirs(child.get()), ElementsAre(L"/c1", L"/c2", L"/c3", L"/p1", L"/p2", L"/g"));
  EXPECT_THAT(binDirs(parent.get()), ElementsAre(L"/p1", L"/p2", L"/g"));
}

TEST_F(ResolutionContextMgrTest, DirsOfEveryKeyCountWhateverKeyIsAskedFor) {
  file(child.get(), L"mine", L"/mine");
  file(child.get(), L"other", L"/other");
  EXPECT_THAT(dirsOf(env(child.get(), L"mine")->getSearchDirs(scBinaryFiles)),
              ElementsAre(L"/mine", L"/other"));
  EXPECT_THAT(dirsOf(env(child.get(), nullptr)->getSearchDirs(scBinaryFiles)),
              ElementsAre(L"/mine", L"/other"));
}

TEST_F(ResolutionContextMgrTest, SecondParentReplacesTheFirst) {
  manager->setParentContext(child.get(), parent.get());
  EXPECT_TRUE(manager->setParentContext(child.get(), grandparent.get()));
  file(parent.get(), L"key", L"/p");
  file(grandparent.get(), L"key", L"/g");
  EXPECT_THAT(binDirs(child.get()), ElementsAre(L"/g"));
}

TEST_F(ResolutionContextMgrTest, ParentIsKeptByNameNotByObject) {
  ObjectPtr<IResolutionContext> shortLived = context(L"short-lived");
  manager->setParentContext(child.get(), shortLived.get());
  file(shortLived.get(), L"key", L"/s");
  EXPECT_EQ(shortLived->addRef(), 2u);
  shortLived->release();
  shortLived = nullptr;
  EXPECT_THAT(binDirs(child.get()), ElementsAre(L"/s"));
}

TEST_F(ResolutionContextMgrTest, LinksFollowTheNameOfTheChild) {
  manager->setParentContext(child.get(), parent.get());
  file(parent.get(), L"key", L"/p");
  EXPECT_THAT(binDirs(context(L"child").get()), ElementsAre(L"/p"));
}

TEST_F(ResolutionContextMgrTest, NullChildIsTheEmptyName) {
  manager->setParentContext(nullptr, parent.get());
  file(parent.get(), L"key", L"/p");
  EXPECT_THAT(binDirs(context(L"").get()), ElementsAre(L"/p"));
  EXPECT_THAT(binDirs(context(nullptr).get()), ElementsAre(L"/p"));
}

TEST_F(ResolutionContextMgrTest, NullParentChangesNothing) {
  manager->setParentContext(child.get(), parent.get());
  file(parent.get(), L"key", L"/p");
  EXPECT_TRUE(manager->setParentContext(child.get(), nullptr));
  EXPECT_THAT(binDirs(child.get()), ElementsAre(L"/p"));
}

// --- search directories

TEST_F(ResolutionContextMgrTest, UnknownContextGivesAnEmptyEnvironment) {
  expectNothingConfigured(*env(child.get()));
}

TEST_F(ResolutionContextMgrTest, NullContainerTakesDirsOutAgain) {
  file(child.get(), L"key", L"/dirs");
  file(child.get(), L"other", L"/other");
  manager->setSearchDirs(child.get(), nullptr, L"key");
  EXPECT_THAT(binDirs(child.get()), ElementsAre(L"/other"));
}

TEST_F(ResolutionContextMgrTest, NullKeyFilesNoDirs) {
  file(child.get(), nullptr, L"/dirs");
  EXPECT_THAT(binDirs(child.get()), IsEmpty());
}

TEST_F(ResolutionContextMgrTest, EnvironmentShowsDirsAddedLater) {
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  manager->setSearchDirs(child.get(), dirs, L"key");
  const ObjectPtr<ISearchEnv> made = env(child.get());
  dirs->addSearchDir(scSourceFiles, L"/late", true, false);
  EXPECT_THAT(entriesOf(made->getSearchDirs(scSourceFiles)),
              ElementsAre(DirEntry{L"/late", true, false}));
}

TEST_F(ResolutionContextMgrTest, EnvironmentInfoIsHandedOn) {
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  const ObjectPtr<ISearchEnv> made = manager->createSearchEnv(child.get(), L"key", info);
  EXPECT_EQ(made->getEnvironmentInfo().get(), info.get());
  EXPECT_FALSE(env(child.get())->getEnvironmentInfo());
}

// --- archive directories

TEST_F(ResolutionContextMgrTest, EveryArchiveOfTheChainIsSearched) {
  manager->setParentContext(parent.get(), grandparent.get());
  manager->setParentContext(child.get(), parent.get());
  const std::wstring near = tree.path("near");
  const std::wstring far = tree.path("far");
  manager->setArchiveDir(child.get(), near.c_str());
  manager->setArchiveDir(grandparent.get(), far.c_str());
  const ObjectPtr<ISearchEnv> made = env(child.get());
  const wchar_t* const folders[] = {L"binaries", L"symbols", L"sources", L"all"};
  for (const search_category_t category : kCategories) {
    const wchar_t* folder = folders[category - scBinaryFiles];
    EXPECT_THAT(entriesOf(made->getArchiveSearchDirs(category)),
                ElementsAre(DirEntry{joinPath(near.c_str(), folder), true, true},
                            DirEntry{joinPath(far.c_str(), folder), true, true}));
    EXPECT_THAT(entriesOf(made->getSearchDirs(category)), IsEmpty());
  }
}

TEST_F(ResolutionContextMgrTest, NullArchiveDirIsIgnoredAndEmptyTakesItAway) {
  manager->setArchiveDir(child.get(), L"/archive");
  manager->setArchiveDir(child.get(), nullptr);
  EXPECT_EQ(entriesOf(env(child.get())->getArchiveSearchDirs(scAllFiles)).size(), 1u);
  manager->setArchiveDir(child.get(), L"");
  EXPECT_THAT(entriesOf(env(child.get())->getArchiveSearchDirs(scAllFiles)), IsEmpty());
}

}  // namespace
}  // namespace QV_2_9
