// Tests of search_manipulator.h: whole searches with the default callbacks.

#include <chrono>
#include <future>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "resolution/search_manipulator_fixture.h"
#include "resolution/test_doubles.h"
#include "search/test_doubles.h"
#include "support/callbacks.h"
#include "support/matchers.h"

namespace QV_2_9 {
namespace {

using internal::ScriptedRoutines;
using quiver_test::Call;
using quiver_test::IsValidFile;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::RecordingSearchStarted;

constexpr std::int32_t kSuggested = kSuggestedResolutionStep;

class RememberingSearch : public SearchManipulatorTest {
 protected:
  RememberingSearch() { found = tree.addFile("binaries/app.dll", "a"); }

  ObjectPtr<IValidFile> find(const wchar_t* name = L"app.dll") const {
    return manager->createFileSearch(context.get(), L"key", nullptr)
        ->findBinFile(name, nullptr, nullptr);
  }
  /// Whether the last search ran its steps, which ask the system.
  bool searched() {
    const bool asked = !system.calls.empty();
    system.calls.clear();
    return asked;
  }
  std::wstring remembered(const wchar_t* name = L"app.dll") const {
    return internal::pathOf(manipulator->getSearchHistory()->findBinFileAssociation(name));
  }

  ScriptedRoutines system;
  ObjectPtr<ISearchManipulator> manipulator = newManipulator();
  std::wstring found;
};

TEST_F(RememberingSearch, DisabledDeclinesWhatWasFound) {
  setModes(*manipulator, hmDisabled);
  EXPECT_FALSE(find());
  EXPECT_EQ(remembered(), L"(none)");
}

TEST_F(RememberingSearch, AdvisoryRecordsThenSuggests) {
  setModes(*manipulator, hmAdvisory);
  EXPECT_THAT(find(), IsValidFile(found, 1, ssHighPrioritySearchDirs));
  EXPECT_EQ(remembered(), found);
  searched();
  EXPECT_THAT(find(), IsValidFile(found, 1, kSuggested));
  EXPECT_FALSE(searched()) << "a suggestion that is valid leaves no need for a step";
}

TEST_F(RememberingSearch, AdvisorySearchesWhenTheRememberedFileIsGone) {
  setModes(*manipulator, hmAdvisory);
  manipulator->getSearchHistory()->addBinFileAssociation(L"app.dll", tree.path("gone").c_str());
  EXPECT_THAT(find(), IsValidFile(found, 1, ssHighPrioritySearchDirs));
  EXPECT_EQ(remembered(), found);
}

TEST_F(RememberingSearch, AdvisoryRecordsNoFailure) {
  setModes(*manipulator, hmAdvisory);
  EXPECT_FALSE(find(L"other.dll"));
  EXPECT_EQ(remembered(L"other.dll"), L"(none)");
  EXPECT_TRUE(searched());
  EXPECT_FALSE(find(L"other.dll"));
  EXPECT_TRUE(searched());
}

TEST_F(RememberingSearch, AuthoritativeNeverSearchesAgainAfterAFailure) {
  setModes(*manipulator, hmAuthoritative);
  EXPECT_FALSE(find(L"other.dll"));
  EXPECT_TRUE(searched());
  EXPECT_EQ(remembered(L"other.dll"), L"(negative)");
  tree.addFile("binaries/other.dll", "late");
  EXPECT_FALSE(find(L"other.dll"));
  EXPECT_FALSE(searched());
}

// Intended: the mode for the start of a search cancels the steps, and a cancelled search takes
// nothing by itself.
TEST_F(RememberingSearch, AuthoritativeAloneForgetsTheFileItRemembers) {
  setModes(*manipulator, hmAuthoritative);
  EXPECT_THAT(find(), IsValidFile(found, 1, ssHighPrioritySearchDirs));
  EXPECT_EQ(remembered(), found);
  EXPECT_FALSE(find());
  EXPECT_EQ(remembered(), L"(negative)");
  EXPECT_FALSE(find());
}

TEST_F(RememberingSearch, AuthoritativeWithAUserWhoTakesTheValidFileKeepsIt) {
  RecordingNoFilesFound user;
  user.answer = [](const Call&, IValidator&, IInvalidFileIterator&, IValidFileIterator& valid) {
    return valid.next();
  };
  setModes(*manipulator, hmAuthoritative);
  manipulator->setNoFilesFoundUserCallback(L"key", &user);
  EXPECT_THAT(find(), IsValidFile(found, 1, ssHighPrioritySearchDirs));
  searched();
  for (int i = 0; i < 3; ++i) {
    EXPECT_THAT(find(), IsValidFile(found, 1, kSuggested));
    EXPECT_EQ(remembered(), found);
    EXPECT_FALSE(searched());
  }
  manipulator->setNoFilesFoundUserCallback(L"key", nullptr);
}

// Intended: what was left unresolved on purpose outweighs the path that this one search suggests.
TEST_F(RememberingSearch, NegativeEntryBeatsTheCallersSuggestion) {
  RecordingNoFilesFound user;
  std::wstring shown;
  user.answer = [&shown](const Call&,
                         IValidator&,
                         IInvalidFileIterator&,
                         IValidFileIterator& valid) -> ObjectPtr<IValidFile> {
    if (const ObjectPtr<IValidFile> file = valid.next())
      shown = file->getPath();
    return nullptr;
  };
  setModes(*manipulator, hmAdvisory);
  manipulator->setNoFilesFoundUserCallback(L"key", &user);
  manipulator->getSearchHistory()->addBinFileAssociation(L"app.dll", nullptr);
  const ObjectPtr<IFileSearch> search = manager->createFileSearch(context.get(), L"key", nullptr);
  EXPECT_FALSE(search->findBinFile(L"app.dll", nullptr, found.c_str()));
  EXPECT_EQ(shown, found);
  manipulator->setNoFilesFoundUserCallback(L"key", nullptr);
}

TEST_F(RememberingSearch, ModesOfTheKindsAreIndependent) {
  manipulator->setFilesFoundMode(L"key", hmAdvisory);
  manipulator->setSearchStartedMode(L"key", hmDisabled);
  EXPECT_THAT(find(), IsValidFile(found, 1, ssHighPrioritySearchDirs));
  EXPECT_EQ(remembered(), found);
  EXPECT_THAT(find(), IsValidFile(found, 1, ssHighPrioritySearchDirs)) << "nothing was suggested";
}

TEST_F(RememberingSearch, ModeChangesTakeEffectAtOnce) {
  setModes(*manipulator, hmAdvisory);
  const ObjectPtr<IFileSearch> search = manager->createFileSearch(context.get(), L"key", nullptr);
  EXPECT_TRUE(search->findBinFile(L"app.dll", nullptr, nullptr));
  setModes(*manipulator, hmDisabled);
  EXPECT_FALSE(search->findBinFile(L"app.dll", nullptr, nullptr));
}

// --- exceptions

/// Whether the lock can be had exclusively by a thread that holds nothing.
bool isFree(ISpinSharedLock& lock) QV_NO_THREAD_SAFETY_ANALYSIS {
  std::future<void> taken = std::async(std::launch::async, [&lock] {
    lock.lock();
    lock.unlock();
  });
  const bool isFree = taken.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
  if (!isFree)
    lock.unlockShared();  // lets the thread end
  return isFree;
}

TEST_F(RememberingSearch, ExceptionsOfUsersLeaveNothingLocked) {
  RecordingSearchStarted started;
  RecordingFilesFound filesFound;
  RecordingNoFilesFound notFound;
  started.answer = [](const Call&, IStringContainer&) -> bool { throw std::runtime_error("1"); };
  filesFound.answer = [](const Call&, IValidFileIterator&) -> ObjectPtr<IValidFile> {
    throw std::runtime_error("2");
  };
  notFound.answer = [](const Call&, IValidator&, IInvalidFileIterator&, IValidFileIterator&)
      -> ObjectPtr<IValidFile> { throw std::runtime_error("3"); };
  setModes(*manipulator, hmAuthoritative);

  manipulator->setSearchStartedUserCallback(L"key", &started);
  EXPECT_THROW(find(), std::runtime_error);
  EXPECT_TRUE(isFree(*started.getLock()));
  manipulator->setSearchStartedUserCallback(L"key", nullptr);

  manipulator->setFilesFoundUserCallback(L"key", &filesFound);
  EXPECT_THROW(find(), std::runtime_error);
  EXPECT_TRUE(isFree(*filesFound.getLock()));
  manipulator->setFilesFoundUserCallback(L"key", nullptr);

  manipulator->setNoFilesFoundUserCallback(L"key", &notFound);
  EXPECT_THROW(find(L"other.dll"), std::runtime_error);
  EXPECT_TRUE(isFree(*notFound.getLock()));
  manipulator->setNoFilesFoundUserCallback(L"key", nullptr);

  EXPECT_EQ(remembered(), L"(none)");
  EXPECT_EQ(remembered(L"other.dll"), L"(none)");
  EXPECT_THAT(find(), IsValidFile(found, 1, ssHighPrioritySearchDirs));
}

}  // namespace
}  // namespace QV_2_9
