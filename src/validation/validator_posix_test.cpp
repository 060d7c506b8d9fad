// Candidates of the kinds that only POSIX file systems have.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quiver/messages.h"
#include "support/callbacks.h"
#include "support/matchers.h"
#include "support/temp_tree.h"
#include "validation/recorders.h"
#include "validation/validator.h"

namespace QV_2_9 {
namespace {

using quiver_test::ErrorInfoRecorder;
using quiver_test::IsInvalidFile;
using quiver_test::IsValidFile;
using quiver_test::RecordingConfidenceLevelPolicy;
using quiver_test::StateMessage;
using quiver_test::TempTree;
using ::testing::ElementsAre;

TEST(ValidatorSpecialFiles, PipeCannotBeOpenedAndDoesNotBlock) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  EXPECT_THAT(validator.validate(tree.addUnreadableFile("pipe").c_str())->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%CantOpenFile"));
}

TEST(ValidatorSpecialFiles, DeviceCannotBeOpened) {
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  EXPECT_THAT(validator.validate(L"/dev/null")->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%CantOpenFile"));
}

TEST(ValidatorSpecialFiles, UnreadableFileTakesItsOwnMessage) {
  TempTree tree;
  const ObjectPtr<IMessageMgr> messages = IMessageMgr::create();
  messages->setFileIsNotReadableMessage(new StateMessage<IFileIsNotReadableMessage>(L"locked"));
  Validator::ValidatorCallbackDecorator decorator(nullptr);
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(decorator.validate(tree.addUnreadableFile("pipe").c_str(), errorInfo), vrInvalid);
  EXPECT_THAT(errorInfo.calls(), ElementsAre(L"code 0", L"text locked"));
}

TEST(ValidatorSpecialFiles, LinkToAFileIsAFile) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  tree.addFile("a.so");
  const std::wstring link = tree.addLink("link.so", "a.so");
  EXPECT_THAT(validator.validate(link.c_str())->getValidFile(), IsValidFile(link, 1, 7));
}

TEST(ValidatorSpecialFiles, LinkToADirectoryIsADirectory) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  tree.addDirectory("dir");
  EXPECT_THAT(validator.validate(tree.addLink("link", "dir").c_str())->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%FileIsDirectory"));
}

TEST(ValidatorSpecialFiles, DanglingLinkDoesNotExist) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  EXPECT_THAT(validator.validate(tree.addLink("link", "missing").c_str())->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%FileDoesNotExist"));
}

TEST(ValidatorSpecialFiles, NameThatIsNoTextStaysUsable) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  const std::wstring file = tree.addFile("caf\xe9.c");
  EXPECT_THAT(validator.validate(file.c_str())->getValidFile(), IsValidFile(file, 1, 7));
}

TEST(ValidatorSpecialFiles, BackslashEndsANameLikeAnyCharacter) {
  TempTree tree;
  tree.addDirectory("dir");
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  const std::wstring file = tree.addFile("dir\\");
  EXPECT_TRUE(validator.validate(file.c_str())->getValidFile());
}

}  // namespace
}  // namespace QV_2_9
