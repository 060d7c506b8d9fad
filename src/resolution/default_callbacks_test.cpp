// Tests of default_callbacks.h: what each kind does in each mode, for each category. Registration
// is tested in search_manipulator_test.cpp.

#include "resolution/default_callbacks.h"

#include <list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/string_container.h"
#include "quiver/search_results.h"
#include "resolution/test_doubles.h"
#include "search/category_ops.h"
#include "search/search_results.h"
#include "support/callbacks.h"

namespace QV_2_9 {
namespace {

using internal::BinOps;
using internal::FileList;
using internal::NoInvalidFiles;
using internal::NoValidator;
using internal::pathOf;
using internal::SoughtFile;
using internal::SrcOps;
using internal::SymOps;
using quiver_test::Call;
using quiver_test::CallbackKind;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::RecordingSearchStarted;

using Suggestions = std::list<std::wstring>;

constexpr SoughtFile kFile{L"a.pdb", L"a.exe", L"c0ffee"};

ObjectPtr<IValidFile> validFile(const wchar_t* path) {
  return new ValidFile(path, 0, ssArchiveSearchDirs);
}

/// The call that a user's callback must see for kFile.
template <class Ops>
Call callOf(CallbackKind kind) {
  Call call;
  call.kind = kind;
  call.category = Ops::kCategory;
  call.name = kFile.name;
  if (Ops::kCategory != scBinaryFiles) {
    call.binary = kFile.binary;
    call.checksum = kFile.checksum;
  }
  return call;
}

template <class Ops>
class DefaultCallbacks : public testing::Test {
 protected:
  template <class Default>
  ObjectPtr<Default> make(std::int32_t mode) const {
    const ObjectPtr<Default> callback(new Default(history, nullptr, L"key"));
    callback->setHistoryMode(mode);
    return callback;
  }

  void remember(const wchar_t* path) const { Ops::addAssociation(*history, kFile, path); }

  std::wstring remembered() const { return pathOf(Ops::findAssociation(*history, kFile)); }

  bool start(DefaultSearchStartedCallback& callback) {
    suggestions.m_list.clear();
    return Ops::searchStarted(callback, kFile, suggestions);
  }
  ObjectPtr<IValidFile> find(DefaultFilesFoundCallback& callback, FileList& files) const {
    return Ops::filesFound(callback, kFile, files);
  }
  ObjectPtr<IValidFile> findNothing(DefaultNoFilesFoundCallback& callback) {
    FileList none({});
    return Ops::noFilesFound(callback, kFile, validator, invalidFiles, none);
  }

  ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  StringContainer suggestions;
  NoInvalidFiles invalidFiles;
  NoValidator validator;
};

struct OpsNames {
  template <class Ops>
  static std::string GetName(int) {
    return Ops::kCategory == scBinaryFiles   ? "Bin"
           : Ops::kCategory == scSymbolFiles ? "Sym"
                                             : "Src";
  }
};
using AllOps = testing::Types<BinOps, SymOps, SrcOps>;
TYPED_TEST_SUITE(DefaultCallbacks, AllOps, OpsNames);

constexpr std::int32_t kStrictModes[] = {hmAuthoritative, 3, -1, 1 << 16 | hmAdvisory};
constexpr std::int32_t kUsingModes[] = {hmAdvisory, hmAuthoritative, 3, -1};

// --- search started

TYPED_TEST(DefaultCallbacks, StartsDisabledAndLetsTheSearchGoOn) {
  this->remember(L"/old");
  const ObjectPtr<DefaultSearchStartedCallback> callback(
      new DefaultSearchStartedCallback(this->history, nullptr, L"key"));
  EXPECT_TRUE(this->start(*callback));
  EXPECT_EQ(this->suggestions.m_list, Suggestions());
}

TYPED_TEST(DefaultCallbacks, NothingRememberedLetsTheSearchGoOn) {
  for (const std::int32_t mode : kUsingModes) {
    const auto callback = this->template make<DefaultSearchStartedCallback>(mode);
    EXPECT_TRUE(this->start(*callback)) << mode;
    EXPECT_EQ(this->suggestions.m_list, Suggestions()) << mode;
  }
}

TYPED_TEST(DefaultCallbacks, AdvisorySuggestsAndSearches) {
  this->remember(L"/old");
  const auto callback = this->template make<DefaultSearchStartedCallback>(hmAdvisory);
  EXPECT_TRUE(this->start(*callback));
  EXPECT_EQ(this->suggestions.m_list, Suggestions{L"/old"});
}

TYPED_TEST(DefaultCallbacks, AuthoritativeSuggestsAndSkipsTheSteps) {
  this->remember(L"/old");
  for (const std::int32_t mode : kStrictModes) {
    const auto callback = this->template make<DefaultSearchStartedCallback>(mode);
    EXPECT_FALSE(this->start(*callback)) << mode;
    EXPECT_EQ(this->suggestions.m_list, Suggestions{L"/old"}) << mode;
  }
}

TYPED_TEST(DefaultCallbacks, FileLeftUnresolvedIsNotSearchedFor) {
  this->remember(nullptr);
  for (const std::int32_t mode : kUsingModes) {
    const auto callback = this->template make<DefaultSearchStartedCallback>(mode);
    EXPECT_FALSE(this->start(*callback)) << mode;
    EXPECT_EQ(this->suggestions.m_list, Suggestions()) << mode;
  }
}

TYPED_TEST(DefaultCallbacks, UserIsAskedBeforeTheHistory) {
  this->remember(L"/old");
  RecordingSearchStarted user;
  user.answer = [](const Call&, IStringContainer& s) {
    s.add(L"/user");
    return true;
  };
  const auto callback = this->template make<DefaultSearchStartedCallback>(hmAdvisory);
  callback->setUserCallback(&user);
  EXPECT_TRUE(this->start(*callback));
  EXPECT_EQ(this->suggestions.m_list, (Suggestions{L"/user", L"/old"}));
  EXPECT_EQ(user.calls(), std::vector<Call>{callOf<TypeParam>(CallbackKind::searchStarted)});
}

TYPED_TEST(DefaultCallbacks, UserWhoCancelsIsObeyedWithoutTheHistory) {
  this->remember(L"/old");
  RecordingSearchStarted user;
  user.answer = [](const Call&, IStringContainer&) { return false; };
  for (const std::int32_t mode : {0, 1, 2, 3, -1}) {
    const auto callback = this->template make<DefaultSearchStartedCallback>(mode);
    callback->setUserCallback(&user);
    EXPECT_FALSE(this->start(*callback)) << mode;
    EXPECT_EQ(this->suggestions.m_list, Suggestions()) << mode;
  }
}

TYPED_TEST(DefaultCallbacks, UserCallbackCanBeTakenOutAgain) {
  RecordingSearchStarted user;
  user.answer = [](const Call&, IStringContainer&) { return false; };
  const auto callback = this->template make<DefaultSearchStartedCallback>(hmDisabled);
  callback->setUserCallback(&user);
  EXPECT_FALSE(this->start(*callback));
  callback->setUserCallback(nullptr);
  EXPECT_TRUE(this->start(*callback));
}

// --- files found

TYPED_TEST(DefaultCallbacks, DisabledTakesNoFileByItself) {
  FileList files({validFile(L"/first")});
  const auto callback = this->template make<DefaultFilesFoundCallback>(hmDisabled);
  EXPECT_FALSE(this->find(*callback, files));
  EXPECT_EQ(files.nexts, 0);
  EXPECT_EQ(this->remembered(), L"(none)");
}

TYPED_TEST(DefaultCallbacks, DisabledReturnsTheUsersChoiceUnrecorded) {
  FileList files({validFile(L"/first")});
  RecordingFilesFound user;
  const auto callback = this->template make<DefaultFilesFoundCallback>(hmDisabled);
  callback->setUserCallback(&user);
  const ObjectPtr<IValidFile> result = this->find(*callback, files);
  ASSERT_TRUE(result);
  EXPECT_STREQ(result->getPath(), L"/first");
  EXPECT_EQ(this->remembered(), L"(none)");
}

TYPED_TEST(DefaultCallbacks, DisabledLetsTheUserDecline) {
  FileList files({validFile(L"/first")});
  RecordingFilesFound user;
  user.answer = [](const Call&, IValidFileIterator&) { return nullptr; };
  const auto callback = this->template make<DefaultFilesFoundCallback>(hmDisabled);
  callback->setUserCallback(&user);
  EXPECT_FALSE(this->find(*callback, files));
  EXPECT_EQ(files.nexts, 0);
}

TYPED_TEST(DefaultCallbacks, FirstFileIsTakenAndRecorded) {
  for (const std::int32_t mode : kUsingModes) {
    this->history->clearAssociations(scAllFiles);
    FileList files({validFile(L"/first"), validFile(L"/second")});
    const auto callback = this->template make<DefaultFilesFoundCallback>(mode);
    const ObjectPtr<IValidFile> result = this->find(*callback, files);
    ASSERT_TRUE(result) << mode;
    EXPECT_STREQ(result->getPath(), L"/first") << mode;
    EXPECT_EQ(this->remembered(), L"/first") << mode;
    EXPECT_EQ(files.nexts, 1) << mode;
  }
}

TYPED_TEST(DefaultCallbacks, UsersChoiceIsTakenAndRecorded) {
  for (const std::int32_t mode : kUsingModes) {
    this->history->clearAssociations(scAllFiles);
    FileList files({validFile(L"/first")});
    RecordingFilesFound user;
    user.answer = [](const Call&, IValidFileIterator&) { return validFile(L"/users"); };
    const auto callback = this->template make<DefaultFilesFoundCallback>(mode);
    callback->setUserCallback(&user);
    const ObjectPtr<IValidFile> result = this->find(*callback, files);
    ASSERT_TRUE(result) << mode;
    EXPECT_STREQ(result->getPath(), L"/users") << mode;
    EXPECT_EQ(this->remembered(), L"/users") << mode;
    EXPECT_EQ(user.calls(), std::vector<Call>{callOf<TypeParam>(CallbackKind::filesFound)});
    EXPECT_EQ(files.nexts, 0) << mode;
  }
}

TYPED_TEST(DefaultCallbacks, UserWhoDeclinesIsOverruled) {
  FileList files({validFile(L"/first")});
  RecordingFilesFound user;
  user.answer = [](const Call&, IValidFileIterator&) { return nullptr; };
  const auto callback = this->template make<DefaultFilesFoundCallback>(hmAdvisory);
  callback->setUserCallback(&user);
  const ObjectPtr<IValidFile> result = this->find(*callback, files);
  ASSERT_TRUE(result);
  EXPECT_STREQ(result->getPath(), L"/first");
  EXPECT_EQ(this->remembered(), L"/first");
}

TYPED_TEST(DefaultCallbacks, OverrulingGoesOnWhereTheUserStopped) {
  FileList files({validFile(L"/first"), validFile(L"/second")});
  RecordingFilesFound user;
  user.answer = [](const Call&, IValidFileIterator& all) {
    all.next();
    return nullptr;
  };
  const auto callback = this->template make<DefaultFilesFoundCallback>(hmAdvisory);
  callback->setUserCallback(&user);
  const ObjectPtr<IValidFile> result = this->find(*callback, files);
  ASSERT_TRUE(result);
  EXPECT_STREQ(result->getPath(), L"/second");
  EXPECT_EQ(files.resets, 0);
}

TYPED_TEST(DefaultCallbacks, NothingLeftToTakeRecordsNothing) {
  for (const std::int32_t mode : kUsingModes) {
    FileList files({});
    const auto callback = this->template make<DefaultFilesFoundCallback>(mode);
    EXPECT_FALSE(this->find(*callback, files)) << mode;
    EXPECT_EQ(this->remembered(), L"(none)") << mode;
  }
}

// --- no files found

TYPED_TEST(DefaultCallbacks, NothingFoundIsRecordedInAuthoritativeModeOnly) {
  for (const std::int32_t mode : {0, 1}) {
    const auto callback = this->template make<DefaultNoFilesFoundCallback>(mode);
    EXPECT_FALSE(this->findNothing(*callback)) << mode;
    EXPECT_EQ(this->remembered(), L"(none)") << mode;
  }
  for (const std::int32_t mode : kStrictModes) {
    this->history->clearAssociations(scAllFiles);
    const auto callback = this->template make<DefaultNoFilesFoundCallback>(mode);
    EXPECT_FALSE(this->findNothing(*callback)) << mode;
    EXPECT_EQ(this->remembered(), L"(negative)") << mode;
  }
}

TYPED_TEST(DefaultCallbacks, UsersFileIsReturnedAndRecordedInAuthoritativeModeOnly) {
  RecordingNoFilesFound user;
  user.answer = [](const Call&, IValidator&, IInvalidFileIterator&, IValidFileIterator&) {
    return validFile(L"/users");
  };
  for (const std::int32_t mode : {0, 1, 2, 3, -1}) {
    this->history->clearAssociations(scAllFiles);
    const auto callback = this->template make<DefaultNoFilesFoundCallback>(mode);
    callback->setUserCallback(&user);
    const ObjectPtr<IValidFile> result = this->findNothing(*callback);
    ASSERT_TRUE(result) << mode;
    EXPECT_STREQ(result->getPath(), L"/users") << mode;
    EXPECT_EQ(this->remembered(), mode == 0 || mode == 1 ? L"(none)" : L"/users") << mode;
    EXPECT_EQ(user.calls().back(), callOf<TypeParam>(CallbackKind::noFilesFound)) << mode;
  }
}

TYPED_TEST(DefaultCallbacks, NoChoiceReplacesARememberedPath) {
  this->remember(L"/old");
  const auto callback = this->template make<DefaultNoFilesFoundCallback>(hmAuthoritative);
  EXPECT_FALSE(this->findNothing(*callback));
  EXPECT_EQ(this->remembered(), L"(negative)");
}

TYPED_TEST(DefaultCallbacks, UserSeesWhatTheSearchCollected) {
  FileList valid({});
  RecordingNoFilesFound user;
  const void* seen[3] = {};
  user.answer = [&seen](const Call&,
                        IValidator& v,
                        IInvalidFileIterator& bad,
                        IValidFileIterator& good) -> ObjectPtr<IValidFile> {
    seen[0] = &v;
    seen[1] = &bad;
    seen[2] = &good;
    return nullptr;
  };
  const auto callback = this->template make<DefaultNoFilesFoundCallback>(hmDisabled);
  callback->setUserCallback(&user);
  TypeParam::noFilesFound(*callback, kFile, this->validator, this->invalidFiles, valid);
  EXPECT_EQ(seen[0], static_cast<IValidator*>(&this->validator));
  EXPECT_EQ(seen[1], static_cast<IInvalidFileIterator*>(&this->invalidFiles));
  EXPECT_EQ(seen[2], static_cast<IValidFileIterator*>(&valid));
}

// --- the history entry is that of the category and of all names

TEST(DefaultCallbackEntries, EveryCategoryRecordsUnderItsOwnNames) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  const ObjectPtr<DefaultFilesFoundCallback> callback(
      new DefaultFilesFoundCallback(history, nullptr, L"key"));
  callback->setHistoryMode(hmAdvisory);
  FileList files({validFile(L"/bin"), validFile(L"/sym"), validFile(L"/sym2"), validFile(L"/src")});
  callback->onBinFilesFound(L"f", files);
  callback->onSymFilesFound(L"f", L"b", L"1", files);
  callback->onSymFilesFound(L"f", L"b", L"2", files);
  callback->onSrcFilesFound(L"f", L"b", L"1", files);
  EXPECT_EQ(pathOf(history->findBinFileAssociation(L"f")), L"/bin");
  EXPECT_EQ(pathOf(history->findSymFileAssociation(L"f", L"b", L"1")), L"/sym");
  EXPECT_EQ(pathOf(history->findSymFileAssociation(L"f", L"b", L"2")), L"/sym2");
  EXPECT_EQ(pathOf(history->findSrcFileAssociation(L"f", L"b", L"1")), L"/src");
}

TEST(DefaultCallbackEntries, HandlersLetGoOfTheHistoryAgain) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  ObjectPtr<DefaultSearchStartedCallback> callback(
      new DefaultSearchStartedCallback(history, nullptr, L"key"));
  StringContainer suggestions;
  callback->onBinSearchStarted(L"f", suggestions);
  EXPECT_EQ(history->addRef(), 3u) << "this test's, the callback's, and the one just taken";
  history->release();
  callback = nullptr;
  EXPECT_EQ(history->addRef(), 2u);
  history->release();
}

}  // namespace
}  // namespace QV_2_9
