// Tests of search_manipulator.h: settings, and registration with the context manager.

#include "resolution/search_manipulator.h"

#include <gtest/gtest.h>

#include "resolution/search_manipulator_fixture.h"
#include "search/test_doubles.h"
#include "support/callbacks.h"

namespace QV_2_9 {
namespace {

using internal::ScriptedRoutines;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::RecordingSearchStarted;

// --- parts

TEST_F(SearchManipulatorTest, UsesThePartsItIsGiven) {
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  const ObjectPtr<ISearchManipulator> manipulator =
      createSearchManipulatorByContext(context, dirs, history);
  EXPECT_EQ(manipulator->getSearchDirContainer().get(), dirs.get());
  EXPECT_EQ(manipulator->getSearchHistory().get(), history.get());
  EXPECT_EQ(manipulator->getVersion(), 1);
}

TEST_F(SearchManipulatorTest, MakesThePartsThatAreMissing) {
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  const ObjectPtr<ISearchManipulator> other = newManipulator();
  ASSERT_TRUE(manipulator->getSearchDirContainer());
  ASSERT_TRUE(manipulator->getSearchHistory());
  EXPECT_NE(manipulator->getSearchHistory().get(), other->getSearchHistory().get());
  EXPECT_NE(manipulator->getSearchDirContainer().get(), other->getSearchDirContainer().get());
  EXPECT_EQ(manipulator->getSearchHistory().get(), manipulator->getSearchHistory().get());
}

TEST_F(SearchManipulatorTest, DirContainerIsNotFiledByItself) {
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  setModes(*manipulator, hmAdvisory);
  manipulator->getSearchDirContainer()->addSearchDir(scBinaryFiles, L"/own", false, false);
  const ObjectPtr<ISearchDirIterator> dirs = env()->getSearchDirs(scBinaryFiles);
  const wchar_t* dir = nullptr;
  bool recursive = false;
  bool highPriority = false;
  ASSERT_TRUE(dirs);
  for (; dirs->get(dir, recursive, highPriority); dirs->next()) EXPECT_STRNE(dir, L"/own");
}

// --- settings and registration

TEST_F(SearchManipulatorTest, NothingIsRegisteredBeforeTheFirstSetting) {
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  EXPECT_EQ(installed(), 0);
}

TEST_F(SearchManipulatorTest, EverySettingRegistersItsKind) {
  RecordingSearchStarted started;
  RecordingFilesFound found;
  RecordingNoFilesFound notFound;
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  EXPECT_TRUE(manipulator->setSearchStartedMode(L"m1", hmAdvisory));
  EXPECT_TRUE(env(L"m1")->getSearchStartedCallback().getCallback());
  EXPECT_TRUE(manipulator->setFilesFoundMode(L"m2", hmAdvisory));
  EXPECT_TRUE(env(L"m2")->getFilesFoundCallback().getCallback());
  EXPECT_TRUE(manipulator->setNoFilesFoundMode(L"m3", hmAdvisory));
  EXPECT_TRUE(env(L"m3")->getNoFilesFoundCallback().getCallback());
  EXPECT_TRUE(manipulator->setSearchStartedUserCallback(L"u1", &started));
  EXPECT_TRUE(env(L"u1")->getSearchStartedCallback().getCallback());
  EXPECT_TRUE(manipulator->setFilesFoundUserCallback(L"u2", &found));
  EXPECT_TRUE(env(L"u2")->getFilesFoundCallback().getCallback());
  EXPECT_TRUE(manipulator->setNoFilesFoundUserCallback(L"u3", &notFound));
  EXPECT_TRUE(env(L"u3")->getNoFilesFoundCallback().getCallback());
  for (const wchar_t* key : {L"m1", L"m2", L"m3", L"u1", L"u2", L"u3"})
    EXPECT_EQ(installed(key), 1) << "only the kind that was set";
}

TEST_F(SearchManipulatorTest, OneDefaultCallbackPerKey) {
  RecordingFilesFound found;
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  manipulator->setFilesFoundMode(L"key", hmAdvisory);
  IFilesFoundCallback* first = env()->getFilesFoundCallback().getCallback();
  manipulator->setFilesFoundUserCallback(L"key", &found);
  manipulator->setFilesFoundMode(L"Key", hmAdvisory);
  EXPECT_EQ(env()->getFilesFoundCallback().getCallback(), first);
  EXPECT_NE(first, &found) << "the default callback stands around the user's";
  EXPECT_NE(env(L"Key")->getFilesFoundCallback().getCallback(), first);
}

TEST_F(SearchManipulatorTest, NullKeyIsRefusedAndChangesNothing) {
  RecordingSearchStarted started;
  RecordingFilesFound found;
  RecordingNoFilesFound notFound;
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  EXPECT_FALSE(manipulator->setSearchStartedMode(nullptr, hmAdvisory));
  EXPECT_FALSE(manipulator->setSearchStartedUserCallback(nullptr, &started));
  EXPECT_FALSE(manipulator->setFilesFoundMode(nullptr, hmAdvisory));
  EXPECT_FALSE(manipulator->setFilesFoundUserCallback(nullptr, &found));
  EXPECT_FALSE(manipulator->setNoFilesFoundMode(nullptr, hmAdvisory));
  EXPECT_FALSE(manipulator->setNoFilesFoundUserCallback(nullptr, &notFound));
  EXPECT_EQ(installed(L""), 0);
}

TEST_F(SearchManipulatorTest, EmptyKeyIsAKey) {
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  setModes(*manipulator, hmAdvisory, L"");
  EXPECT_EQ(installed(L""), 3);
  EXPECT_EQ(installed(L"key"), 0);
}

TEST_F(SearchManipulatorTest, NullContextRegistersUnderTheEmptyName) {
  const ObjectPtr<ISearchManipulator> manipulator =
      createSearchManipulatorByContext(nullptr, nullptr, nullptr);
  setModes(*manipulator, hmAdvisory);
  EXPECT_EQ(installed(), 0);
  class Nameless final : public RefCountImpl<IResolutionContext> {
   public:
    const wchar_t* getName() override { return L""; }
  };
  const ObjectPtr<IResolutionContext> nameless(new Nameless);
  EXPECT_TRUE(manager->createSearchEnv(nameless.get(), L"key", nullptr)
                  ->getFilesFoundCallback()
                  .getCallback());
}

TEST_F(SearchManipulatorTest, ChildContextsUseTheCallbacks) {
  const ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  setModes(*manipulator, hmAdvisory);
  const ObjectPtr<IResolutionContext> child =
      manager->createContext(tree.path("child").c_str(), true);
  manager->setParentContext(child.get(), context.get());
  EXPECT_EQ(
      manager->createSearchEnv(child.get(), L"key", nullptr)->getFilesFoundCallback().getCallback(),
      env()->getFilesFoundCallback().getCallback());
}

// --- ends

TEST_F(SearchManipulatorTest, ReleasedManipulatorUnregisters) {
  ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  setModes(*manipulator, hmAdvisory);
  const ObjectPtr<ISearchEnv> before = env();
  EXPECT_EQ(installed(), 3);
  manipulator = nullptr;
  EXPECT_EQ(installed(), 0);
  EXPECT_EQ(before->getSearchStartedCallback().getCallback(), nullptr);
  EXPECT_EQ(before->getFilesFoundCallback().getCallback(), nullptr);
  EXPECT_EQ(before->getNoFilesFoundCallback().getCallback(), nullptr);
}

TEST_F(SearchManipulatorTest, UnregisteringLeavesOtherKindsAndKeys) {
  quiver_test::RecordingConfidenceLevelPolicy policy;
  RecordingFilesFound found;
  ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  setModes(*manipulator, hmAdvisory);
  manager->setConfidenceLevelPolicyCallback(context.get(), L"key", &policy);
  manager->setFilesFoundCallback(context.get(), L"other", &found);
  manipulator = nullptr;
  EXPECT_EQ(env()->getConfidenceLevelPolicyCallback().getCallback(), &policy);
  EXPECT_EQ(env(L"other")->getFilesFoundCallback().getCallback(), &found);
}

TEST_F(SearchManipulatorTest, SecondManipulatorReplacesTheFirst) {
  const ObjectPtr<ISearchManipulator> first = newManipulator();
  first->setFilesFoundMode(L"key", hmAdvisory);
  IFilesFoundCallback* ofFirst = env()->getFilesFoundCallback().getCallback();
  const ObjectPtr<ISearchManipulator> second = newManipulator();
  second->setFilesFoundMode(L"key", hmAdvisory);
  IFilesFoundCallback* ofSecond = env()->getFilesFoundCallback().getCallback();
  EXPECT_NE(ofFirst, ofSecond);
  EXPECT_TRUE(ofSecond);
  first->setFilesFoundMode(L"key", hmDisabled);
  EXPECT_EQ(env()->getFilesFoundCallback().getCallback(), ofSecond)
      << "a later setting of the first registers nothing";
}

TEST_F(SearchManipulatorTest, FirstManipulatorTakesTheSecondsRegistrationAway) {
  ObjectPtr<ISearchManipulator> first = newManipulator();
  setModes(*first, hmAdvisory);
  const ObjectPtr<ISearchManipulator> second = newManipulator();
  setModes(*second, hmAdvisory);
  const ObjectPtr<ISearchEnv> before = env();
  first = nullptr;
  EXPECT_EQ(installed(), 0);
  EXPECT_TRUE(before->getFilesFoundCallback().getCallback())
      << "environments made before keep the second's";
}

TEST_F(SearchManipulatorTest, LivesWithoutTheCallersManager) {
  ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  setModes(*manipulator, hmAdvisory);
  manager = nullptr;
  manager = IResolutionContextMgr::create();
  EXPECT_EQ(installed(), 3) << "the manipulator keeps the manager";
  manager = nullptr;
  context = nullptr;
  manipulator = nullptr;
  manager = IResolutionContextMgr::create();
  context = manager->getResultDirContext(tree.root().c_str());
  EXPECT_EQ(installed(), 0) << "the manager went with its last user";
}

TEST_F(SearchManipulatorTest, EnvironmentMayOutliveEverything) {
  ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  setModes(*manipulator, hmAdvisory);
  ObjectPtr<ISearchEnv> made = env();
  ObjectPtr<IFileSearch> search = IFileSearch::create(made);
  ObjectPtr<ISearchHistory> history = manipulator->getSearchHistory();
  manager = nullptr;
  context = nullptr;
  manipulator = nullptr;
  ScriptedRoutines system;
  EXPECT_FALSE(search->findBinFile(L"app.dll", nullptr, nullptr));
  EXPECT_EQ(history->addRef(), 2u) << "nothing else holds the history";
  history->release();
  made = nullptr;
  search = nullptr;
}

TEST_F(SearchManipulatorTest, SharedHistoryServesBoth) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  ObjectPtr<ISearchManipulator> first = createSearchManipulatorByContext(context, nullptr, history);
  const ObjectPtr<ISearchManipulator> second =
      createSearchManipulatorByContext(context, nullptr, history);
  first->getSearchHistory()->addBinFileAssociation(L"a.dll", L"/a.dll");
  first = nullptr;
  EXPECT_TRUE(second->getSearchHistory()->findBinFileAssociation(L"a.dll"));
}

}  // namespace
}  // namespace QV_2_9
