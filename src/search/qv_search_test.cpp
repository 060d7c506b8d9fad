// Tests of qv_search.h: the roads through a lookup, with real files, a real validator and
// operating-system routines that know nothing unless told.

#include "search/qv_search.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quiver/messages.h"
#include "search/test_doubles.h"
#include "support/callbacks.h"
#include "support/matchers.h"
#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

using internal::ScriptedRoutines;
using quiver_test::Call;
using quiver_test::IsInvalidFile;
using quiver_test::IsValidFile;
using quiver_test::RecordingConfidenceLevelPolicy;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::RecordingSearchStarted;
using testing::ElementsAre;

/// Answers as told and notes what it is shown.
class ScriptedCheck final : public IValidatorCallback {
 public:
  validation_result_t answer = vrValid;
  std::vector<std::wstring> paths;

  validation_result_t validate(const wchar_t* path, IErrorInfoContainer& errorInfo) override {
    paths.emplace_back(path);
    if (answer == vrInvalid)
      errorInfo.setErrorMessage(L"%Rejected");
    return answer;
  }
};

class FileSearchTest : public testing::Test {
 protected:
  FileSearchTest() { m_env->setSearchDirs(m_dirs); }

  ObjectPtr<IValidFile> findSrc(const wchar_t* name, const wchar_t* suggestion = nullptr) {
    return m_search->findSrcFile(name, L"/bin/app", L"c0ffee", m_check, suggestion);
  }
  void addDir(const std::string& name, bool recursive, bool high) {
    m_dirs->addSearchDir(scAllFiles, m_tree.addDirectory(name).c_str(), recursive, high);
  }

  quiver_test::TempTree m_tree;
  ScriptedRoutines m_routines;
  ScriptedCheck m_scriptedCheck;
  IValidatorCallback* m_check = nullptr;
  ObjectPtr<IEditableSearchDirContainer> m_dirs = IEditableSearchDirContainer::create();
  ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
  ObjectPtr<IFileSearch> m_search = IFileSearch::create(m_env);
};

TEST_F(FileSearchTest, IsCreatedWithOneReference) {
  EXPECT_EQ(m_search->addRef(), 2u);
  EXPECT_EQ(m_search->release(), 1u);
  EXPECT_EQ(m_search->getVersion(), 1);
}

TEST_F(FileSearchTest, AnswersNothingForAnEmptyNameAndAsksNobody) {
  RecordingSearchStarted started;
  RecordingNoFilesFound none;
  m_env->setSearchStartedCallback(&started);
  m_env->setNoFilesFoundCallback(&none);
  const std::wstring path = m_tree.addFile("a.c");
  for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L""}) {
    EXPECT_FALSE(m_search->findBinFile(name, nullptr, path.c_str()));
    EXPECT_FALSE(m_search->findSymFile(name, L"b", L"c", nullptr, path.c_str(), nullptr));
    EXPECT_FALSE(m_search->findSrcFile(name, L"b", L"c", nullptr, path.c_str()));
  }
  EXPECT_TRUE(started.calls().empty());
  EXPECT_TRUE(none.calls().empty());
}

TEST_F(FileSearchTest, ReturnsTheFirstValidFileInStepOrder) {
  addDir("low", false, false);
  m_tree.addFile("low/a.c");
  addDir("high", false, true);
  const std::wstring high = m_tree.addFile("high/a.c");
  EXPECT_THAT(findSrc(L"a.c"), IsValidFile(high, 1, 2));
}

TEST_F(FileSearchTest, RunsNoFurtherStepOnceAFileIsFound) {
  addDir("high", false, true);
  m_tree.addFile("high/a.dll");
  m_search->findBinFile(L"a.dll", nullptr, nullptr);
  EXPECT_TRUE(m_routines.calls.empty());
}

TEST_F(FileSearchTest, ReturnsAValidSuggestionWithoutAnyStep) {
  const std::wstring path = m_tree.addFile("elsewhere/a.dll");
  EXPECT_THAT(m_search->findBinFile(L"a.dll", nullptr, path.c_str()), IsValidFile(path, 1, 7));
  EXPECT_TRUE(m_routines.calls.empty());
}

TEST_F(FileSearchTest, DropsSuggestionsThatDoNotExist) {
  addDir("high", false, true);
  const std::wstring path = m_tree.addFile("high/a.c");
  EXPECT_THAT(findSrc(L"a.c", L""), IsValidFile(path, 1, 2));
  EXPECT_THAT(findSrc(L"a.c", m_tree.path("absent").c_str()), IsValidFile(path, 1, 2));
}

TEST_F(FileSearchTest, WorksWithoutAnEnvironment) {
  const ObjectPtr<IFileSearch> search = IFileSearch::create(nullptr);
  const std::wstring path = m_tree.addFile("a.c");
  EXPECT_THAT(search->findSrcFile(path.c_str(), nullptr, nullptr, nullptr, nullptr),
              IsValidFile(path, 1, 3));
  EXPECT_FALSE(search->findBinFile(m_tree.path("absent").c_str(), nullptr, nullptr));
}

TEST_F(FileSearchTest, KeepsItsEnvironmentAlive) {
  addDir("high", false, true);
  const std::wstring path = m_tree.addFile("high/a.c");
  m_env = nullptr;
  m_dirs = nullptr;
  EXPECT_THAT(findSrc(L"a.c"), IsValidFile(path, 1, 2));
}

TEST_F(FileSearchTest, LetsTheCallerConfirmOrRejectEachCandidate) {
  m_check = &m_scriptedCheck;
  addDir("high", false, true);
  const std::wstring path = m_tree.addFile("high/a.c");
  EXPECT_THAT(findSrc(L"a.c"), IsValidFile(path, 0, 2));
  m_scriptedCheck.answer = vrInvalid;
  EXPECT_FALSE(findSrc(L"a.c"));
}

TEST_F(FileSearchTest, AddsTheSuggestionsOfTheSearchStartedCallback) {
  const std::wstring path = m_tree.addFile("elsewhere/a.c");
  RecordingSearchStarted started;
  started.answer = [&](const Call&, IStringContainer& suggestions) {
    suggestions.add(path.c_str());
    return true;
  };
  m_env->setSearchStartedCallback(&started);
  EXPECT_THAT(findSrc(L"a.c"), IsValidFile(path, 1, 7));
}

TEST_F(FileSearchTest, TriesTheCallersSuggestionBeforeTheCallbacks) {
  const std::wstring first = m_tree.addFile("1/a.c");
  const std::wstring second = m_tree.addFile("2/a.c");
  RecordingSearchStarted started;
  started.answer = [&](const Call&, IStringContainer& suggestions) {
    suggestions.add(second.c_str());
    return true;
  };
  m_env->setSearchStartedCallback(&started);
  EXPECT_THAT(findSrc(L"a.c", first.c_str()), IsValidFile(first, 1, 7));
}

TEST_F(FileSearchTest, SkipsEveryStepWhenTheSearchIsCancelled) {
  addDir("high", false, true);
  m_tree.addFile("high/a.c");
  const std::wstring suggested = m_tree.addFile("suggested/a.c");
  RecordingSearchStarted started;
  started.answer = [](const Call&, IStringContainer&) { return false; };
  RecordingFilesFound found;
  RecordingNoFilesFound none;
  std::vector<std::wstring> valid;
  none.answer = [&](const Call&, IValidator&, IInvalidFileIterator&, IValidFileIterator& files) {
    while (const ObjectPtr<IValidFile> file = files.next()) valid.emplace_back(file->getPath());
    return ObjectPtr<IValidFile>();
  };
  m_env->setSearchStartedCallback(&started);
  m_env->setFilesFoundCallback(&found);
  m_env->setNoFilesFoundCallback(&none);
  EXPECT_FALSE(findSrc(L"a.c", suggested.c_str()));
  EXPECT_THAT(valid, ElementsAre(suggested));
  EXPECT_TRUE(found.calls().empty());
}

TEST_F(FileSearchTest, ReturnsWhatTheFilesFoundCallbackPicks) {
  addDir("high", false, true);
  m_tree.addFile("high/a.c");
  addDir("low", false, false);
  const std::wstring low = m_tree.addFile("low/a.c");
  RecordingFilesFound found;
  found.answer = [](const Call&, IValidFileIterator& files) {
    files.next();
    return files.next();
  };
  m_env->setFilesFoundCallback(&found);
  EXPECT_THAT(findSrc(L"a.c"), IsValidFile(low, 1, 6));
}

TEST_F(FileSearchTest, AsksTheNoFilesFoundCallbackWhenTheOtherDeclines) {
  addDir("high", false, true);
  const std::wstring path = m_tree.addFile("high/a.c");
  auto log = std::make_shared<quiver_test::CallLog>();
  RecordingFilesFound found(log);
  found.answer = [](const Call&, IValidFileIterator&) { return ObjectPtr<IValidFile>(); };
  RecordingNoFilesFound none(log);
  none.answer = [](const Call&, IValidator&, IInvalidFileIterator&, IValidFileIterator& files) {
    return files.next();
  };
  m_env->setFilesFoundCallback(&found);
  m_env->setNoFilesFoundCallback(&none);
  EXPECT_THAT(findSrc(L"a.c"), IsValidFile(path, 1, 2));
  ASSERT_EQ(log->calls().size(), 2u);
  EXPECT_EQ(log->calls()[0].kind, quiver_test::CallbackKind::filesFound);
  EXPECT_EQ(log->calls()[1].kind, quiver_test::CallbackKind::noFilesFound);
}

TEST_F(FileSearchTest, ShowsRejectedCandidatesWithTheirReasons) {
  addDir("high", false, true);
  m_tree.addDirectory("high/dir");
  m_tree.addFile("high/a.c");
  m_check = &m_scriptedCheck;
  m_scriptedCheck.answer = vrInvalid;
  RecordingNoFilesFound none;
  std::vector<ObjectPtr<IInvalidFile>> rejected;
  none.answer = [&](const Call&, IValidator&, IInvalidFileIterator& files, IValidFileIterator&) {
    while (const ObjectPtr<IInvalidFile> file = files.next()) rejected.push_back(file);
    return rejected.empty() ? nullptr : rejected.back()->makeValid();
  };
  m_env->setNoFilesFoundCallback(&none);
  const ObjectPtr<IValidFile> answer = findSrc(L"a.c", m_tree.path("high/dir").c_str());
  EXPECT_THAT(rejected,
              ElementsAre(IsInvalidFile(ecUnusable, L"%FileIsDirectory"),
                          IsInvalidFile(ecNotSet, L"%Rejected")));
  EXPECT_THAT(answer, IsValidFile(m_tree.path("high/a.c"), 0, 2));
}

TEST_F(FileSearchTest, LetsTheNoFilesFoundCallbackValidateAPathOfItsOwn) {
  const std::wstring picked = m_tree.addFile("picked/a.c");
  RecordingNoFilesFound none;
  none.answer =
      [&](const Call&, IValidator& validator, IInvalidFileIterator&, IValidFileIterator&) {
        return validator.validate(picked.c_str())->getValidFile();
      };
  m_env->setNoFilesFoundCallback(&none);
  m_check = &m_scriptedCheck;
  EXPECT_THAT(findSrc(L"a.c"), IsValidFile(picked, 0, 7));
}

TEST_F(FileSearchTest, AsksCallbacksForTheCategoryWithTheNamesSearched) {
  RecordingSearchStarted started;
  RecordingNoFilesFound none;
  m_env->setSearchStartedCallback(&started);
  m_env->setNoFilesFoundCallback(&none);
  m_search->findBinFile(L"a.dll", nullptr, nullptr);
  m_search->findSymFile(L"a.pdb", L"a.dll", L"c0ffee", nullptr, nullptr, nullptr);
  m_search->findSrcFile(L"a.c", nullptr, nullptr, nullptr, nullptr);
  const auto expected = [](quiver_test::CallbackKind kind) {
    return std::vector<Call>{{kind, scBinaryFiles, L"a.dll", L"", L"", 0},
                             {kind, scSymbolFiles, L"a.pdb", L"a.dll", L"c0ffee", 0},
                             {kind, scSourceFiles, L"a.c", L"", L"", 0}};
  };
  EXPECT_EQ(started.calls(), expected(quiver_test::CallbackKind::searchStarted));
  EXPECT_EQ(none.calls(), expected(quiver_test::CallbackKind::noFilesFound));
}

TEST_F(FileSearchTest, GivesThePolicyTheWholeStepValue) {
  addDir("tree", true, true);
  const std::wstring path = m_tree.addFile("tree/sub/a.c");
  RecordingConfidenceLevelPolicy policy;
  policy.answer = [](const Call&) { return true; };
  m_env->setConfidenceLevelPolicyCallback(&policy);
  EXPECT_THAT(findSrc(L"a.c"), IsValidFile(path, 2, 2));
  ASSERT_EQ(policy.calls().size(), 1u);
  EXPECT_EQ(policy.calls()[0].step, 0x10002);
  EXPECT_EQ(policy.calls()[0].category, scSourceFiles);
}

TEST_F(FileSearchTest, UsesCallbacksInstalledAfterItWasCreated) {
  RecordingNoFilesFound none;
  findSrc(L"a.c");
  m_env->setNoFilesFoundCallback(&none);
  findSrc(L"a.c");
  m_env->setNoFilesFoundCallback(nullptr);
  findSrc(L"a.c");
  EXPECT_EQ(none.calls().size(), 1u);
}

TEST_F(FileSearchTest, CallsNoCallbackThatIsGone) {
  auto none = std::make_unique<RecordingNoFilesFound>();
  m_env->setNoFilesFoundCallback(none.get());
  none.reset();
  EXPECT_FALSE(findSrc(L"a.c"));
}

TEST_F(FileSearchTest, ReleasesTheClassLockWhenACallbackThrows) {
  addDir("high", false, true);
  m_tree.addFile("high/a.c");
  RecordingSearchStarted started;
  RecordingFilesFound found;
  RecordingNoFilesFound none;
  RecordingConfidenceLevelPolicy policy;
  m_env->setSearchStartedCallback(&started);
  m_env->setFilesFoundCallback(&found);
  m_env->setNoFilesFoundCallback(&none);
  m_env->setConfidenceLevelPolicyCallback(&policy);
  const auto thrower = [](auto&&...) -> ObjectPtr<IValidFile> { throw std::runtime_error("no"); };
  none.answer = thrower;
  EXPECT_THROW(findSrc(L"absent.c"), std::runtime_error);
  found.answer = thrower;
  EXPECT_THROW(findSrc(L"a.c"), std::runtime_error);
  policy.answer = [](auto&&...) -> bool { throw std::runtime_error("no"); };
  EXPECT_THROW(findSrc(L"a.c"), std::runtime_error);
  started.answer = [](auto&&...) -> bool { throw std::runtime_error("no"); };
  EXPECT_THROW(findSrc(L"a.c"), std::runtime_error);
  // Each of these takes a class lock exclusively: a hold left over would make it wait for ever.
  started.disconnectHandlers();
  found.disconnectHandlers();
  none.disconnectHandlers();
  policy.disconnectHandlers();
  const ObjectPtr<IValidFile> answer = findSrc(L"a.c");
  EXPECT_TRUE(answer);
}

TEST_F(FileSearchTest, SearchesAgainFromInsideACallback) {
  addDir("high", false, true);
  const std::wstring inner = m_tree.addFile("high/inner.c");
  RecordingNoFilesFound none;
  none.answer = [&](const Call& call, auto&&...) {
    return call.name == L"outer.c" ? findSrc(L"inner.c") : ObjectPtr<IValidFile>();
  };
  m_env->setNoFilesFoundCallback(&none);
  EXPECT_THAT(findSrc(L"outer.c"), IsValidFile(inner, 1, 2));
}

TEST_F(FileSearchTest, FetchesTheMessagesOfTheClientForEachSearch) {
  class Message final : public RefCountImpl<IFileIsDirectoryMessage> {
    void formatMessage(IMsgContainer& container) override { container.setMessage(L"a folder"); }
  };
  const ObjectPtr<IMessageMgr> messages = IMessageMgr::create();
  messages->setFileIsDirectoryMessage(new Message);
  RecordingNoFilesFound none;
  std::vector<ObjectPtr<IInvalidFile>> rejected;
  none.answer = [&](const Call&, IValidator&, IInvalidFileIterator& files, IValidFileIterator&) {
    while (const ObjectPtr<IInvalidFile> file = files.next()) rejected.push_back(file);
    return ObjectPtr<IValidFile>();
  };
  m_env->setNoFilesFoundCallback(&none);
  findSrc(m_tree.root().c_str());
  EXPECT_THAT(rejected, ElementsAre(IsInvalidFile(ecUnusable, L"a folder")));
}

TEST_F(FileSearchTest, ServesSeveralThreadsAtOnce) {
  addDir("tree", true, true);
  const std::wstring path = m_tree.addFile("tree/sub/a.c");
  RecordingFilesFound found;
  RecordingConfidenceLevelPolicy policy;
  m_env->setFilesFoundCallback(&found);
  m_env->setConfidenceLevelPolicyCallback(&policy);
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  info->setOSType(2);
  m_env->setEnvironmentInfo(info);
  const std::uint32_t references = info->addRef();
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int n = 0; n < 50; ++n) {
        const ObjectPtr<IFileSearch> mine = m_search;
        const ObjectPtr<IValidFile> answer = mine->findSrcFile(L"a.c", L"", L"", nullptr, nullptr);
        ASSERT_TRUE(answer);
        ASSERT_EQ(answer->getPath(), path);
        ASSERT_FALSE(mine->findBinFile(L"missing.dll", nullptr, nullptr));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(found.calls().size(), 200u);
  EXPECT_EQ(info->release(), references - 1);
}

TEST_F(FileSearchTest, SurvivesACallbackThatGoesAwayOnAnotherThread) {
  addDir("high", false, true);
  const std::wstring path = m_tree.addFile("high/a.c");
  for (int round = 0; round < 20; ++round) {
    auto found = std::make_unique<RecordingFilesFound>();
    m_env->setFilesFoundCallback(found.get());
    std::thread other([&] {
      found->disconnectHandlers();  // before its members go: a search may be calling it
      found.reset();
    });
    for (int i = 0; i < 5; ++i) EXPECT_THAT(findSrc(L"a.c"), IsValidFile(path, 1, 2));
    other.join();
    EXPECT_EQ(m_env->getFilesFoundCallback().getCallback(), nullptr);
  }
}

}  // namespace
}  // namespace QV_2_9
