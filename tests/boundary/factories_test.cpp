// What a caller that links nothing but the shared library can do with it.

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "quiver/quiver.h"

namespace {

using namespace QV_2_9;

// A new object has one reference, the factory's result, and knows its version.
template <class Interface>
void expectFresh(const ObjectPtr<Interface>& object) {
  ASSERT_TRUE(object);
  EXPECT_EQ(object->getVersion(), 1);
  EXPECT_EQ(object->addRef(), 2u);
  EXPECT_EQ(object->release(), 1u);
}

TEST(Factories, MakeSearchDirContainers) {
  const auto dirs = IEditableSearchDirContainer::create();
  expectFresh(dirs);
  ASSERT_TRUE(dirs->addSearchDir(scAllFiles, L"/a", false, false));
  expectFresh(dirs->createIterator(scAllFiles));
}

TEST(Factories, MakeSearchDirChains) {
  expectFresh(ISearchDirChain::create());
}

TEST(Factories, MakeSearchEnvironments) {
  expectFresh(IEditableSearchEnv::create());
}

TEST(Factories, MakeEnvironmentInfo) {
  expectFresh(IEditableEnvironmentInfo::create());
}

TEST(Factories, MakeFileSearches) {
  expectFresh(IFileSearch::create(nullptr));
  expectFresh(IFileSearch::create(IEditableSearchEnv::create()));
}

/// Counts lookups and candidates.
class CountingJournal final : public ISearchJournal {
 public:
  int begun = 0;
  int candidates = 0;
  int ended = 0;

  void onLookupBegan(const JournalLookup&) override { ++begun; }
  void onSuggestion(const JournalSuggestion&) override {}
  void onStepBegan(search_step_t) override {}
  void onDirectory(const JournalDirectory&) override {}
  void onCandidate(const JournalCandidate&) override { ++candidates; }
  void onServer(const JournalServer&) override {}
  void onStepEnded(const JournalStepEnd&) override {}
  void onStepNotRun(const JournalStepNotRun&) override {}
  void onLookupEnded(const JournalAnswer& event) override { ended += event.path ? 100 : 1; }
};

TEST(Factories, MakeFileSearchesThatTellAJournal) {
  CountingJournal journal;
  const auto search = createFileSearchWithJournal(IEditableSearchEnv::create(), &journal);
  expectFresh(search);
  EXPECT_FALSE(search->findSrcFile(L"/absent/a.c", nullptr, nullptr, nullptr, nullptr));
  EXPECT_EQ(journal.begun, 1);
  EXPECT_EQ(journal.candidates, 1);
  EXPECT_EQ(journal.ended, 1);
}

TEST(Factories, MakeTheChecksumCalculator) {
  const auto calculator = IChecksumCalculator::create();
  expectFresh(calculator);
  expectFresh(calculator->createChecksum(ctMD5, L"d41d8cd98f00b204e9800998ecf8427e"));
}

TEST(Factories, MakeTheMessageManager) {
  expectFresh(IMessageMgr::create());
}

TEST(Factories, MakeTheResolutionContextManager) {
  const auto manager = IResolutionContextMgr::create();
  expectFresh(manager);
  expectFresh(manager->createContext(L"/results/r000", true));
}

TEST(Factories, MakeSearchHistories) {
  const auto history = ISearchHistory::create();
  expectFresh(history);
  history->addBinFileAssociation(L"a.dll", L"/a.dll");
  EXPECT_STREQ(history->findBinFileAssociation(L"a.dll")->getPath(), L"/a.dll");
}

TEST(Factories, MakeSearchManipulators) {
  const auto contexts = IResolutionContextMgr::create();
  const auto context = contexts->createContext(L"/results/r000", true);
  const auto history = ISearchHistory::create();
  const auto manipulator = createSearchManipulatorByContext(context, nullptr, history);
  expectFresh(manipulator);
  EXPECT_EQ(manipulator->getSearchHistory().get(), history.get());
}

TEST(Factories, MakePathMappings) {
  const auto mappings = IPathMappings::create();
  expectFresh(mappings);
  EXPECT_TRUE(mappings->learn(L"/ci/src/a.cpp", L"/home/u/src/a.cpp"));
  const auto mapping = mappings->getMapping(0);
  expectFresh(mapping);
  EXPECT_STREQ(mapping->getRecordedPrefix(), L"/ci");
}

TEST(Factories, StartAfreshAfterTheLastReferenceToASingleton) {
  auto manager = IMessageMgr::create();
  EXPECT_EQ(IMessageMgr::create().get(), manager.get());
  manager = nullptr;
  expectFresh(IMessageMgr::create());
}

TEST(Statuses, HaveTexts) {
  EXPECT_STREQ(statusToString(stOutOfMemory), "Out of memory");
}

class Message final : public RefCountImpl<ISrcChecksumMismatchMessage> {
 public:
  explicit Message(bool& gone) : m_gone(gone) {}
  ~Message() override { m_gone = true; }
  void formatMessage(IMsgContainer& container, const wchar_t*) override {
    container.setMessage(L"differs");
  }

 private:
  bool& m_gone;
};

TEST(CallersObjects, DieWithTheLibrarysLastReference) {
  bool gone = false;
  auto manager = IMessageMgr::create();
  manager->setSrcChecksumMismatchMessage(new Message(gone));
  EXPECT_FALSE(gone);
  manager = nullptr;
  EXPECT_TRUE(gone);
}

#if defined(__GNUC__)
// The checks are plain objects that nobody deletes through a base.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class QuietChecksumValidator final : public ChecksumValidator {
 public:
  using ChecksumValidator::ChecksumValidator;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

class ErrorInfo final : public IErrorInfoContainer {
 public:
  void setErrorCode(int32_t) override {}
  void setErrorMessage(const wchar_t*) override {}
};

TEST(ExportedClasses, CanBeDerivedFrom) {
  QuietChecksumValidator validator(scBinaryFiles, nullptr);
  ErrorInfo info;
  EXPECT_EQ(validator.validate(L"/", info), vrUndecided);
}

struct Refusal : std::runtime_error {
  Refusal() : std::runtime_error("refused") {}
};

class ThrowingCallback final : public ISearchStartedCallback {
 public:
  ~ThrowingCallback() override { disconnectHandlers(); }
  bool onBinSearchStarted(const wchar_t*, IStringContainer&) override { throw Refusal(); }
  bool onSymSearchStarted(const wchar_t*,
                          const wchar_t*,
                          const wchar_t*,
                          IStringContainer&) override {
    throw Refusal();
  }
  bool onSrcSearchStarted(const wchar_t*,
                          const wchar_t*,
                          const wchar_t*,
                          IStringContainer&) override {
    throw Refusal();
  }
};

TEST(Callbacks, OfAClassShareOneLock) {
  ThrowingCallback one;
  ThrowingCallback two;
  ASSERT_TRUE(one.getLock());
  EXPECT_EQ(one.getLock(), two.getLock());
}

TEST(Callbacks, AreForgottenWhenTheyGo) {
  const auto env = IEditableSearchEnv::create();
  {
    ThrowingCallback callback;
    env->setSearchStartedCallback(&callback);
    EXPECT_EQ(env->getSearchStartedCallback().getCallback(), &callback);
  }
  EXPECT_EQ(env->getSearchStartedCallback().getCallback(), nullptr);
}

TEST(Callbacks, ThrowThroughTheLibraryAndLeaveNoLockHeld) {
  const auto env = IEditableSearchEnv::create();
  const auto search = IFileSearch::create(env);
  ThrowingCallback callback;
  env->setSearchStartedCallback(&callback);
  EXPECT_THROW(search->findBinFile(L"a.dll", nullptr, nullptr), Refusal);
  const LockGuard exclusive(callback.getLock());  // would wait for ever
}

}  // namespace
