// The layers of validation, their order, and what the two kinds of files carry.

#include "validation/validator.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quiver/messages.h"
#include "search/search_step.h"
#include "support/callbacks.h"
#include "support/matchers.h"
#include "support/temp_tree.h"
#include "validation/recorders.h"

namespace QV_2_9 {
namespace {

using quiver_test::ErrorInfoRecorder;
using quiver_test::IsInvalidFile;
using quiver_test::IsValidFile;
using quiver_test::RecordingConfidenceLevelPolicy;
using quiver_test::StateMessage;
using quiver_test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Decorator = Validator::ValidatorCallbackDecorator;

/// A caller's check that notes the paths it gets.
class Check final : public IValidatorCallback {
 public:
  explicit Check(int answer) : m_answer(static_cast<validation_result_t>(answer)) {}

  validation_result_t validate(const wchar_t* path, IErrorInfoContainer& errorInfo) override {
    m_paths.emplace_back(path);
    if (fill)
      fill(errorInfo);
    return m_answer;
  }

  const std::vector<std::wstring>& paths() const { return m_paths; }
  std::function<void(IErrorInfoContainer&)> fill;

 private:
  const validation_result_t m_answer;
  std::vector<std::wstring> m_paths;
};

class ValidatorTest : public ::testing::Test {
 protected:
  ObjectPtr<IValidatedFile> verdict(IValidatorCallback* check,
                                    const std::wstring& path,
                                    std::uint32_t step = 3,
                                    search_category_t category = scSourceFiles) {
    Validator validator(check, m_policy, category);
    return validator.validateInStep(path.c_str(), step);
  }

  TempTree m_tree;
  RecordingConfidenceLevelPolicy m_policy;
};

TEST_F(ValidatorTest, ConfirmedFileHasConfidenceZero) {
  const std::wstring file = m_tree.addFile("a.cpp");
  Check check(vrValid);
  const ObjectPtr<IValidatedFile> result = verdict(&check, file);
  EXPECT_THAT(result->getValidFile(), IsValidFile(file, 0, 3));
  EXPECT_FALSE(result->getInvalidFile());
  EXPECT_THAT(m_policy.calls(), IsEmpty());
}

TEST_F(ValidatorTest, RejectedFileCarriesWhatTheCheckWrote) {
  const std::wstring file = m_tree.addFile("a.cpp");
  Check check(vrInvalid);
  check.fill = [](IErrorInfoContainer& errorInfo) {
    errorInfo.setErrorCode(42);
    errorInfo.setErrorMessage(L"first");
    errorInfo.setErrorMessage(L"why");
    errorInfo.setErrorMessage(nullptr);
  };
  const ObjectPtr<IValidatedFile> result = verdict(&check, file, 6);
  EXPECT_FALSE(result->getValidFile());
  EXPECT_THAT(result->getInvalidFile(), IsInvalidFile(42, L"why"));
  EXPECT_EQ(result->getInvalidFile()->getPath(), file);
  EXPECT_EQ(result->getInvalidFile()->getStep(), 6);
  EXPECT_THAT(m_policy.calls(), IsEmpty());
}

TEST_F(ValidatorTest, CheckThatWritesNothingLeavesCodeTwoAndNoText) {
  Check check(vrInvalid);
  const ObjectPtr<IValidatedFile> result = verdict(&check, m_tree.addFile("a.cpp"));
  EXPECT_THAT(result->getInvalidFile(), IsInvalidFile(ecNotSet, L""));
}

TEST_F(ValidatorTest, EachCandidateStartsWithFreshErrorInformation) {
  const std::wstring file = m_tree.addFile("a.cpp");
  int calls = 0;
  Check check(vrInvalid);
  check.fill = [&calls](IErrorInfoContainer& errorInfo) {
    if (calls++ == 0) {
      errorInfo.setErrorCode(1);
      errorInfo.setErrorMessage(L"why");
    }
  };
  Validator validator(&check, m_policy, scSourceFiles);
  validator.validateInStep(file.c_str(), 1);
  EXPECT_THAT(validator.validateInStep(file.c_str(), 1)->getInvalidFile(),
              IsInvalidFile(ecNotSet, L""));
}

class UndecidedValidatorTest : public ValidatorTest, public ::testing::WithParamInterface<int> {};

TEST_P(UndecidedValidatorTest, AsksThePolicy) {
  const std::wstring file = m_tree.addFile("a.cpp");
  Check check(GetParam());
  EXPECT_THAT(verdict(&check, file)->getValidFile(), IsValidFile(file, 1, 3));
  m_policy.answer = [](const quiver_test::Call&) { return true; };
  EXPECT_THAT(verdict(&check, file)->getValidFile(), IsValidFile(file, 2, 3));
}

INSTANTIATE_TEST_SUITE_P(AnswersOtherThanYesAndNo,
                         UndecidedValidatorTest,
                         ::testing::Values(vrUndecided, 3, -1));

TEST_F(ValidatorTest, WithoutACheckThePolicyRanks) {
  const std::wstring file = m_tree.addFile("a.cpp");
  EXPECT_THAT(verdict(nullptr, file)->getValidFile(), IsValidFile(file, 1, 3));
  m_policy.answer = [](const quiver_test::Call&) { return true; };
  EXPECT_THAT(verdict(nullptr, file)->getValidFile(), IsValidFile(file, 2, 3));
}

TEST_F(ValidatorTest, PolicyGetsCategoryAndTheWholeStepValue) {
  const std::wstring file = m_tree.addFile("a.pdb");
  const ObjectPtr<IValidatedFile> result = verdict(nullptr, file, 0x10002, scSymbolFiles);
  ASSERT_EQ(m_policy.calls().size(), 1u);
  EXPECT_EQ(m_policy.calls()[0].category, scSymbolFiles);
  EXPECT_EQ(m_policy.calls()[0].step, 0x10002);
  EXPECT_EQ(result->getValidFile()->getStep(), 2);
}

TEST_F(ValidatorTest, FilesKeepOnlyTheStepNumber) {
  Check yes(vrValid);
  Check no(vrInvalid);
  const std::wstring file = m_tree.addFile("a.cpp");
  EXPECT_EQ(verdict(&yes, file, 0x10006)->getValidFile()->getStep(), 6);
  EXPECT_EQ(verdict(&no, file, 0x10001)->getInvalidFile()->getStep(), 1);
}

TEST_F(ValidatorTest, ValidateReportsASuggestedResolution) {
  const std::wstring file = m_tree.addFile("a.dll");
  Validator validator(nullptr, m_policy, scBinaryFiles);
  EXPECT_THAT(validator.validate(file.c_str())->getValidFile(), IsValidFile(file, 1, 7));
  ASSERT_EQ(m_policy.calls().size(), 1u);
  EXPECT_EQ(m_policy.calls()[0].category, scBinaryFiles);
  EXPECT_EQ(m_policy.calls()[0].step, 7);
}

TEST_F(ValidatorTest, NullPathDoesNotExist) {
  Check check(vrValid);
  Validator validator(&check, m_policy, scBinaryFiles);
  const ObjectPtr<IInvalidFile> file = validator.validate(nullptr)->getInvalidFile();
  EXPECT_THAT(file, IsInvalidFile(ecUnusable, L"%FileDoesNotExist"));
  EXPECT_STREQ(file->getPath(), L"");
  EXPECT_EQ(file->getStep(), 7);
  EXPECT_THAT(check.paths(), IsEmpty());
}

TEST_F(ValidatorTest, EmptyPathDoesNotExist) {
  EXPECT_THAT(verdict(nullptr, L"")->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%FileDoesNotExist"));
}

TEST_F(ValidatorTest, CheckSeesThePathAsGivenAndTheFilesItsCanonicalForm) {
  const std::wstring file = m_tree.addFile("a.cpp");
  const std::wstring asGiven = m_tree.path("x/../a.cpp");
  m_tree.addDirectory("x");
  Check yes(vrValid);
  Check no(vrInvalid);
  EXPECT_EQ(verdict(&yes, asGiven)->getValidFile()->getPath(), file);
  EXPECT_EQ(verdict(&no, asGiven)->getInvalidFile()->getPath(), file);
  EXPECT_THAT(yes.paths(), ElementsAre(asGiven));
  EXPECT_THAT(no.paths(), ElementsAre(asGiven));
}

TEST_F(ValidatorTest, MissingFileIsRejectedBeforeTheCheck) {
  Check check(vrValid);
  const ObjectPtr<IValidatedFile> result = verdict(&check, m_tree.path("missing"));
  EXPECT_THAT(result->getInvalidFile(), IsInvalidFile(ecUnusable, L"%FileDoesNotExist"));
  EXPECT_THAT(check.paths(), IsEmpty());
}

TEST_F(ValidatorTest, FileThatVanishesIsRejectedFromThenOn) {
  const std::wstring file = m_tree.addFile("a.cpp");
  Check check(vrValid);
  check.fill = [&file](IErrorInfoContainer&) { std::filesystem::remove(file); };
  Validator validator(&check, m_policy, scSourceFiles);
  EXPECT_TRUE(validator.validate(file.c_str())->getValidFile());
  EXPECT_THAT(validator.validate(file.c_str())->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%FileDoesNotExist"));
}

TEST_F(ValidatorTest, DirectoryIsRejectedBeforeTheCheck) {
  const std::wstring dir = m_tree.addDirectory("dir");
  Check check(vrValid);
  for (const std::wstring& path : {dir, dir + L"/"}) {
    EXPECT_THAT(verdict(&check, path)->getInvalidFile(),
                IsInvalidFile(ecUnusable, L"%FileIsDirectory"));
  }
  EXPECT_THAT(check.paths(), IsEmpty());
}

// The state checks write the code, then the text.

class StateChecks : public ValidatorTest {
 protected:
  std::vector<std::wstring> calls(const std::wstring& path) {
    Decorator decorator(nullptr);
    ErrorInfoRecorder errorInfo;
    EXPECT_EQ(decorator.validate(path.c_str(), errorInfo), vrInvalid);
    return errorInfo.calls();
  }

  const ObjectPtr<IMessageMgr> m_messages = IMessageMgr::create();
};

TEST_F(StateChecks, WriteTheCodeBeforeTheText) {
  EXPECT_THAT(calls(m_tree.path("missing")), ElementsAre(L"code 0", L"text %FileDoesNotExist"));
  EXPECT_THAT(calls(m_tree.addDirectory("dir")), ElementsAre(L"code 0", L"text %FileIsDirectory"));
}

TEST_F(StateChecks, TakeTheTextOfTheRegisteredMessage) {
  m_messages->setFileDoesNotExistMessage(new StateMessage<IFileDoesNotExistMessage>(L"gone"));
  m_messages->setFileIsDirectoryMessage(new StateMessage<IFileIsDirectoryMessage>(L"a folder"));
  EXPECT_THAT(calls(m_tree.path("missing")), ElementsAre(L"code 0", L"text gone"));
  EXPECT_THAT(calls(m_tree.addDirectory("dir")), ElementsAre(L"code 0", L"text a folder"));
}

TEST_F(StateChecks, MessageThatWritesNothingCountsAsAbsent) {
  const auto message = new StateMessage<IFileDoesNotExistMessage>();
  m_messages->setFileDoesNotExistMessage(message);
  EXPECT_THAT(calls(m_tree.path("missing")), ElementsAre(L"code 0", L"text %FileDoesNotExist"));
  EXPECT_EQ(message->asked(), 1);
}

TEST_F(StateChecks, MessageThatWritesAnEmptyTextCountsAsAbsent) {
  const auto message = new StateMessage<IFileDoesNotExistMessage>(L"");
  m_messages->setFileDoesNotExistMessage(message);
  EXPECT_THAT(calls(m_tree.path("missing")), ElementsAre(L"code 0", L"text %FileDoesNotExist"));
  EXPECT_EQ(message->asked(), 1);
}

TEST_F(StateChecks, AskOnlyTheMessageOfTheFailedCheck) {
  const auto missing = new StateMessage<IFileDoesNotExistMessage>(L"x");
  const auto directory = new StateMessage<IFileIsDirectoryMessage>(L"x");
  const auto unreadable = new StateMessage<IFileIsNotReadableMessage>(L"x");
  m_messages->setFileDoesNotExistMessage(missing);
  m_messages->setFileIsDirectoryMessage(directory);
  m_messages->setFileIsNotReadableMessage(unreadable);
  calls(m_tree.addDirectory("dir"));
  EXPECT_EQ(missing->asked(), 0);
  EXPECT_EQ(directory->asked(), 1);
  EXPECT_EQ(unreadable->asked(), 0);
}

TEST_F(StateChecks, TakeTheirMessagesWhenTheyAreBuilt) {
  Decorator decorator(nullptr);
  m_messages->setFileDoesNotExistMessage(new StateMessage<IFileDoesNotExistMessage>(L"late"));
  ErrorInfoRecorder errorInfo;
  decorator.validate(m_tree.path("missing").c_str(), errorInfo);
  EXPECT_THAT(errorInfo.calls(), ElementsAre(L"code 0", L"text %FileDoesNotExist"));
}

TEST(ValidatorMessages, OutliveTheManagerInAValidator) {
  TempTree tree;
  ObjectPtr<IMessageMgr> messages = IMessageMgr::create();
  messages->setFileDoesNotExistMessage(new StateMessage<IFileDoesNotExistMessage>(L"gone"));
  Decorator decorator(nullptr);
  messages = nullptr;
  // The validator holds no reference to the manager, so this one is new and empty.
  EXPECT_FALSE(IMessageMgr::create()->getFileDoesNotExistMessage());
  ErrorInfoRecorder errorInfo;
  decorator.validate(tree.path("missing").c_str(), errorInfo);
  EXPECT_THAT(errorInfo.calls(), ElementsAre(L"code 0", L"text gone"));
}

TEST_F(ValidatorTest, CheckGetsTheContainerItself) {
  Check check(vrInvalid);
  Decorator decorator(&check);
  ErrorInfoRecorder errorInfo;
  IErrorInfoContainer* seen = nullptr;
  check.fill = [&seen](IErrorInfoContainer& given) { seen = &given; };
  decorator.validate(m_tree.addFile("a.cpp").c_str(), errorInfo);
  EXPECT_EQ(seen, &errorInfo);
  EXPECT_THAT(errorInfo.calls(), IsEmpty());
}

TEST_F(ValidatorTest, UnreadableFileCannotBeOpenedAndDoesNotBlock) {
  TempTree files;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  EXPECT_THAT(validator.validate(files.addUnreadableFile("a").c_str())->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%CantOpenFile"));
}

TEST_F(StateChecks, TakeTheMessageForAnUnreadableFile) {
  TempTree files;
  const ObjectPtr<IMessageMgr> messages = IMessageMgr::create();
  messages->setFileIsNotReadableMessage(new StateMessage<IFileIsNotReadableMessage>(L"locked"));
  Decorator decorator(nullptr);
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(decorator.validate(files.addUnreadableFile("a").c_str(), errorInfo), vrInvalid);
  EXPECT_THAT(errorInfo.calls(), ElementsAre(L"code 0", L"text locked"));
}

}  // namespace
}  // namespace QV_2_9
