// Checks by time and size, on files whose attributes the tests set.

#include "quiver/source_file_validators.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_tree.h"
#include "validation/recorders.h"

// The checks that tests derive from are never deleted through a base.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace QV_2_9 {
namespace {

using quiver_test::ContentMessage;
using quiver_test::ErrorInfoRecorder;
using quiver_test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int64_t kTime = 1500000000;
constexpr std::int64_t kGiB = std::int64_t{1} << 30;

// A file of three bytes and time kTime against every combination of recorded values.

struct MatchRow {
  const char* name;
  std::int64_t time;
  std::int64_t size;
  validation_result_t expected;
};

class TimeAndSizeMatch : public ::testing::TestWithParam<MatchRow> {};

TEST_P(TimeAndSizeMatch, FollowsTheTable) {
  TempTree tree;
  const std::wstring file = tree.addFile("a.cpp", "abc");
  tree.setModificationTime("a.cpp", kTime, 999999999);
  SourceFileTimeAndSizeMatchValidator validator(GetParam().time, GetParam().size);
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(validator.validate(file.c_str(), errorInfo), GetParam().expected);
  if (GetParam().expected == vrInvalid) {
    EXPECT_THAT(errorInfo.calls(), ElementsAre(L"text %ModificationTimeOrSizeMismatch", L"code 1"));
  } else {
    EXPECT_THAT(errorInfo.calls(), IsEmpty());
  }
}

const MatchRow kMatches[] = {
    {"NothingRecorded", 0, 0, vrUndecided},
    {"TimeEqualNoSize", kTime, 0, vrValid},
    {"SizeEqualNoTime", 0, 3, vrValid},
    {"BothEqual", kTime, 3, vrValid},
    {"TimeEqualSizeNot", kTime, 4, vrInvalid},
    {"TimeNotSizeEqual", kTime + 1, 3, vrInvalid},
    {"NoToleranceBelow", kTime - 1, 3, vrInvalid},
    {"TimeNotNoSize", kTime + 1, 0, vrInvalid},
    {"SizeNotNoTime", 0, 4, vrInvalid},
    {"NegativeTimeRecorded", -kTime, 0, vrInvalid},
};
INSTANTIATE_TEST_SUITE_P(Table,
                         TimeAndSizeMatch,
                         ::testing::ValuesIn(kMatches),
                         [](const auto& row) { return std::string(row.param.name); });

class SourceFileValidators : public ::testing::Test {
 protected:
  void SetUp() override { m_tree.setModificationTime("a.cpp", kTime); }

  std::vector<std::wstring> rejection(IValidatorCallback& validator) {
    ErrorInfoRecorder errorInfo;
    EXPECT_EQ(validator.validate(m_file.c_str(), errorInfo), vrInvalid);
    return errorInfo.calls();
  }

  TempTree m_tree;
  const std::wstring m_file = m_tree.addFile("a.cpp", "abc");
  const ObjectPtr<IMessageMgr> m_messages = IMessageMgr::create();
};

TEST_F(SourceFileValidators, MissingFileHasTimeAndSizeZero) {
  const std::wstring missing = m_tree.path("missing");
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(0, 0).validate(missing.c_str(), errorInfo),
            vrUndecided);
  EXPECT_THAT(errorInfo.calls(), IsEmpty());
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(kTime, 0).validate(missing.c_str(), errorInfo),
            vrInvalid);
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(0, 3).validate(nullptr, errorInfo), vrInvalid);
}

TEST_F(SourceFileValidators, TimeMismatchAsksItsMessageAndNotThatOfTheSize) {
  const auto time = new ContentMessage<IModificationTimeMismatchMessage>(L"time");
  const auto size = new ContentMessage<ISizeMismatchMessage>(L"size");
  m_messages->setModificationTimeMismatchMessage(time);
  m_messages->setSizeMismatchMessage(size);
  SourceFileTimeAndSizeMatchValidator validator(kTime + 1, 4);
  EXPECT_THAT(rejection(validator), ElementsAre(L"text time", L"code 1"));
  EXPECT_THAT(time->details(), ElementsAre(L""));
  EXPECT_THAT(size->details(), IsEmpty());
}

TEST_F(SourceFileValidators, TimeMismatchWithoutAMessageDoesNotTurnToThatOfTheSize) {
  const auto size = new ContentMessage<ISizeMismatchMessage>(L"size");
  m_messages->setSizeMismatchMessage(size);
  SourceFileTimeAndSizeMatchValidator validator(kTime + 1, 4);
  EXPECT_THAT(rejection(validator),
              ElementsAre(L"text %ModificationTimeOrSizeMismatch", L"code 1"));
  EXPECT_THAT(size->details(), IsEmpty());
}

TEST_F(SourceFileValidators, SizeMismatchAsksItsMessageAndNotThatOfTheTime) {
  const auto time = new ContentMessage<IModificationTimeMismatchMessage>(L"time");
  const auto size = new ContentMessage<ISizeMismatchMessage>(L"size");
  m_messages->setModificationTimeMismatchMessage(time);
  m_messages->setSizeMismatchMessage(size);
  SourceFileTimeAndSizeMatchValidator validator(kTime, 4);
  EXPECT_THAT(rejection(validator), ElementsAre(L"text size", L"code 1"));
  EXPECT_THAT(size->details(), ElementsAre(L""));
  EXPECT_THAT(time->details(), IsEmpty());
}

TEST_F(SourceFileValidators, MessagesThatWriteNoTextLeaveTheKey) {
  m_messages->setModificationTimeMismatchMessage(
      new ContentMessage<IModificationTimeMismatchMessage>());
  m_messages->setSizeMismatchMessage(new ContentMessage<ISizeMismatchMessage>(L""));
  SourceFileTimeAndSizeMatchValidator forTime(kTime + 1, 0);
  SourceFileTimeAndSizeMatchValidator forSize(0, 4);
  EXPECT_THAT(rejection(forTime), ElementsAre(L"text %ModificationTimeOrSizeMismatch", L"code 1"));
  EXPECT_THAT(rejection(forSize), ElementsAre(L"text %ModificationTimeOrSizeMismatch", L"code 1"));
}

TEST_F(SourceFileValidators, SizeOfThreeGiBIsNegative) {
  const std::wstring file = m_tree.addSparseFile("big.cpp", 3 * kGiB);
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(0, -kGiB).validate(file.c_str(), errorInfo),
            vrValid);
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(0, 3 * kGiB).validate(file.c_str(), errorInfo),
            vrInvalid);
}

TEST_F(SourceFileValidators, SizeBeyondFourGiBWraps) {
  const std::wstring file = m_tree.addSparseFile("big.cpp", 4 * kGiB + 5);
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(0, 5).validate(file.c_str(), errorInfo), vrValid);
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(0, 4 * kGiB + 5).validate(file.c_str(), errorInfo),
            vrInvalid);
}

TEST_F(SourceFileValidators, SizeOfFourGiBIsZeroAndNeverMatches) {
  const std::wstring file = m_tree.addSparseFile("big.cpp", 4 * kGiB);
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(0, 4 * kGiB).validate(file.c_str(), errorInfo),
            vrInvalid);
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(0, 0).validate(file.c_str(), errorInfo),
            vrUndecided)
      << "zero is no recorded size";
}

TEST_F(SourceFileValidators, MissingFileIsRejectedForItsTimeFirst) {
  const auto time = new ContentMessage<IModificationTimeMismatchMessage>(L"time");
  const auto size = new ContentMessage<ISizeMismatchMessage>(L"size");
  m_messages->setModificationTimeMismatchMessage(time);
  m_messages->setSizeMismatchMessage(size);
  SourceFileTimeAndSizeMatchValidator validator(kTime, 3);
  ErrorInfoRecorder errorInfo;
  validator.validate(m_tree.path("missing").c_str(), errorInfo);
  EXPECT_THAT(errorInfo.calls(), ElementsAre(L"text time", L"code 1"));
  EXPECT_THAT(size->details(), IsEmpty());
}

TEST_F(SourceFileValidators, MessagesAreThoseOfTheConstruction) {
  m_messages->setSizeMismatchMessage(new ContentMessage<ISizeMismatchMessage>(L"early"));
  SourceFileTimeAndSizeMatchValidator validator(0, 4);
  m_messages->setSizeMismatchMessage(new ContentMessage<ISizeMismatchMessage>(L"late"));
  EXPECT_THAT(rejection(validator), ElementsAre(L"text early", L"code 1"));
}

class OwnMismatchTexts final : public SourceFileTimeAndSizeMatchValidator {
 public:
  using SourceFileTimeAndSizeMatchValidator::SourceFileTimeAndSizeMatchValidator;

 private:
  void fillTimeMismatchErrorMessage(IModificationTimeMismatchMessage&,
                                    IMsgContainer& container) override {
    container.setMessage(L"own time");
  }
  void fillSizeMismatchErrorMessage(ISizeMismatchMessage&, IMsgContainer& container) override {
    container.setMessage(L"own size");
  }
};

TEST_F(SourceFileValidators, SubclassWritesItsOwnTextsForRegisteredMessages) {
  m_messages->setModificationTimeMismatchMessage(
      new ContentMessage<IModificationTimeMismatchMessage>(L"time"));
  m_messages->setSizeMismatchMessage(new ContentMessage<ISizeMismatchMessage>(L"size"));
  OwnMismatchTexts forTime(kTime + 1, 0);
  OwnMismatchTexts forSize(0, 4);
  EXPECT_THAT(rejection(forTime), ElementsAre(L"text own time", L"code 1"));
  EXPECT_THAT(rejection(forSize), ElementsAre(L"text own size", L"code 1"));
}

// The up-to-date check: a reference of kTime against source files of other times.

struct AgeRow {
  const char* name;
  std::int64_t fileTime;
  validation_result_t expected;
};

class UpToDateCheck : public ::testing::TestWithParam<AgeRow> {};

TEST_P(UpToDateCheck, FollowsTheTable) {
  TempTree tree;
  const std::wstring reference = tree.addFile("app");
  const std::wstring file = tree.addFile("a.cpp");
  tree.setModificationTime("app", kTime);
  tree.setModificationTime("a.cpp", GetParam().fileTime);
  SourceFileUpToDateCheckValidator validator(reference.c_str());
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(validator.validate(file.c_str(), errorInfo), GetParam().expected);
  if (GetParam().expected == vrInvalid) {
    EXPECT_THAT(errorInfo.calls(), ElementsAre(L"text %SourceFileUpToDate", L"code 1"));
  } else {
    EXPECT_THAT(errorInfo.calls(), IsEmpty());
  }
}

const AgeRow kAges[] = {
    {"OneSecondOlder", kTime - 1, vrUndecided},
    {"Equal", kTime, vrUndecided},
    {"OneSecondNewer", kTime + 1, vrInvalid},
};
INSTANTIATE_TEST_SUITE_P(Table, UpToDateCheck, ::testing::ValuesIn(kAges), [](const auto& row) {
  return std::string(row.param.name);
});

TEST_F(SourceFileValidators, FileThatCannotBeExaminedIsOld) {
  SourceFileUpToDateCheckValidator validator(m_file.c_str());
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(validator.validate(m_tree.path("missing").c_str(), errorInfo), vrUndecided);
}

TEST_F(SourceFileValidators, ReferenceThatCannotBeExaminedDecidesNothing) {
  for (const wchar_t* reference : {static_cast<const wchar_t*>(nullptr), L"", L"/no/such/file"}) {
    SourceFileUpToDateCheckValidator validator(reference);
    ErrorInfoRecorder errorInfo;
    EXPECT_EQ(validator.validate(m_file.c_str(), errorInfo), vrUndecided);
    EXPECT_THAT(errorInfo.calls(), IsEmpty());
  }
}

TEST_F(SourceFileValidators, ReferenceIsExaminedOnce) {
  const std::wstring reference = m_tree.addFile("app");
  m_tree.setModificationTime("app", kTime);
  SourceFileUpToDateCheckValidator validator(reference.c_str());
  m_tree.setModificationTime("app", kTime - 10);
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(validator.validate(m_file.c_str(), errorInfo), vrUndecided);
}

TEST_F(SourceFileValidators, ReferenceThatAppearsLaterDecidesNothing) {
  SourceFileUpToDateCheckValidator validator(m_tree.path("app").c_str());
  m_tree.addFile("app");
  m_tree.setModificationTime("app", kTime - 10);
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(validator.validate(m_file.c_str(), errorInfo), vrUndecided);
}

// Intended: time zero says that there is no reference.
TEST_F(SourceFileValidators, ReferenceOfTheFirstSecondDecidesNothing) {
  const std::wstring reference = m_tree.addFile("app");
  m_tree.setModificationTime("app", 0);
  SourceFileUpToDateCheckValidator validator(reference.c_str());
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(validator.validate(m_file.c_str(), errorInfo), vrUndecided);
}

TEST_F(SourceFileValidators, MessageForANewerFileThatWritesNoTextLeavesTheKey) {
  const std::wstring reference = m_tree.addFile("app");
  m_tree.setModificationTime("app", kTime - 1);
  m_messages->setSourceFileUpToDateMessage(new ContentMessage<ISourceFileUpToDateMessage>());
  SourceFileUpToDateCheckValidator validator(reference.c_str());
  EXPECT_THAT(rejection(validator), ElementsAre(L"text %SourceFileUpToDate", L"code 1"));
}

TEST_F(SourceFileValidators, NewerFileTakesTheTextOfTheMessage) {
  const std::wstring reference = m_tree.addFile("app");
  m_tree.setModificationTime("app", kTime - 1);
  const auto message = new ContentMessage<ISourceFileUpToDateMessage>(L"newer");
  m_messages->setSourceFileUpToDateMessage(message);
  SourceFileUpToDateCheckValidator validator(reference.c_str());
  EXPECT_THAT(rejection(validator), ElementsAre(L"text newer", L"code 1"));
  EXPECT_THAT(message->details(), ElementsAre(L""));
}

class OwnUpToDateText final : public SourceFileUpToDateCheckValidator {
 public:
  using SourceFileUpToDateCheckValidator::SourceFileUpToDateCheckValidator;

 private:
  void fillUpToDateErrorMessage(ISourceFileUpToDateMessage&, IMsgContainer& container) override {
    container.setMessage(L"own text");
  }
};

TEST_F(SourceFileValidators, SubclassWritesItsOwnTextForANewerFile) {
  const std::wstring reference = m_tree.addFile("app");
  m_tree.setModificationTime("app", kTime - 1);
  m_messages->setSourceFileUpToDateMessage(
      new ContentMessage<ISourceFileUpToDateMessage>(L"newer"));
  OwnUpToDateText validator(reference.c_str());
  EXPECT_THAT(rejection(validator), ElementsAre(L"text own text", L"code 1"));
}

}  // namespace
}  // namespace QV_2_9
