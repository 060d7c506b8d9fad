#include "support/callbacks.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace quiver_test {
namespace {

using QV_2_9::CallbackHolder;
using QV_2_9::IInvalidFile;
using QV_2_9::IInvalidFileIterator;
using QV_2_9::ISearchStartedCallback;
using QV_2_9::IStringContainer;
using QV_2_9::IValidatedFile;
using QV_2_9::IValidator;
using QV_2_9::IValidFile;
using QV_2_9::IValidFileIterator;
using QV_2_9::ObjectPtr;
using QV_2_9::scAllFiles;
using QV_2_9::scBinaryFiles;
using QV_2_9::scSourceFiles;
using QV_2_9::scSymbolFiles;
using testing::ElementsAre;

class Suggestions final : public IStringContainer {
 public:
  void add(const wchar_t* text) override { texts.emplace_back(text); }
  std::vector<std::wstring> texts;
};

class NoFiles final : public IValidFileIterator {
 public:
  void reset() override {}
  ObjectPtr<IValidFile> next() override {
    ++asked;
    return nullptr;
  }
  int asked = 0;
};

class NoInvalidFiles final : public IInvalidFileIterator {
 public:
  void reset() override {}
  ObjectPtr<IInvalidFile> next() override { return nullptr; }
};

class NoValidator final : public IValidator {
 public:
  ObjectPtr<IValidatedFile> validate(const wchar_t*) override { return nullptr; }
};

Call call(CallbackKind kind, QV_2_9::search_category_t category, std::wstring name) {
  return {kind, category, std::move(name), L"", L"", 0};
}

TEST(RecordingCallbacks, RecordNamesAndCategories) {
  RecordingSearchStarted started;
  Suggestions suggestions;
  EXPECT_TRUE(started.onBinSearchStarted(L"a.dll", suggestions));
  EXPECT_TRUE(started.onSymSearchStarted(L"a.pdb", L"a.dll", nullptr, suggestions));
  EXPECT_TRUE(started.onSrcSearchStarted(L"a.cpp", L"a.dll", L"12", suggestions));
  EXPECT_THAT(
      started.calls(),
      ElementsAre(call(CallbackKind::searchStarted, scBinaryFiles, L"a.dll"),
                  Call{CallbackKind::searchStarted, scSymbolFiles, L"a.pdb", L"a.dll", kNullText},
                  Call{CallbackKind::searchStarted, scSourceFiles, L"a.cpp", L"a.dll", L"12"}));
}

TEST(RecordingCallbacks, ShareALogInTheOrderOfTheCalls) {
  auto log = std::make_shared<CallLog>();
  RecordingSearchStarted started(log);
  RecordingFilesFound found(log);
  RecordingNoFilesFound notFound(log);
  RecordingConfidenceLevelPolicy policy(log);
  Suggestions suggestions;
  NoFiles files;
  NoInvalidFiles invalidFiles;
  NoValidator validator;

  started.onBinSearchStarted(L"a", suggestions);
  EXPECT_FALSE(policy.decideConfidenceLevel(scAllFiles, 0x10002));
  EXPECT_FALSE(found.onSrcFilesFound(L"b", L"", L"", files));
  EXPECT_FALSE(notFound.onSymNoFilesFound(L"c", L"", L"", validator, invalidFiles, files));
  EXPECT_THAT(log->calls(),
              ElementsAre(call(CallbackKind::searchStarted, scBinaryFiles, L"a"),
                          Call{CallbackKind::confidenceLevel, scAllFiles, L"", L"", L"", 0x10002},
                          call(CallbackKind::filesFound, scSourceFiles, L"b"),
                          call(CallbackKind::noFilesFound, scSymbolFiles, L"c")));
  log->clear();
  EXPECT_TRUE(log->calls().empty());
}

TEST(RecordingCallbacks, AnswerWhatTheyAreTold) {
  RecordingSearchStarted started;
  started.answer = [](const Call& call, IStringContainer& suggestions) {
    suggestions.add(call.name.c_str());
    return false;
  };
  Suggestions suggestions;
  EXPECT_FALSE(started.onBinSearchStarted(L"a.dll", suggestions));
  EXPECT_THAT(suggestions.texts, ElementsAre(L"a.dll"));

  RecordingConfidenceLevelPolicy policy;
  policy.answer = [](const Call& call) { return call.step == 3; };
  EXPECT_TRUE(policy.decideConfidenceLevel(scBinaryFiles, 3));
  EXPECT_FALSE(policy.decideConfidenceLevel(scBinaryFiles, 4));
}

TEST(RecordingFilesFound, TakesTheFirstFileByDefault) {
  RecordingFilesFound found;
  NoFiles files;
  found.onBinFilesFound(L"a.dll", files);
  EXPECT_EQ(files.asked, 1);
}

TEST(RecordingCallbacks, EmptyTheirHoldersWhenTheyGo) {
  auto callback = std::make_unique<RecordingSearchStarted>();
  const CallbackHolder<ISearchStartedCallback> holder(callback.get());
  ASSERT_EQ(holder.getCallback(), callback.get());
  callback.reset();
  EXPECT_EQ(holder.getCallback(), nullptr);
}

}  // namespace
}  // namespace quiver_test
