// Candidates of the kinds that only POSIX file systems have.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/callbacks.h"
#include "support/matchers.h"
#include "support/temp_tree.h"
#include "validation/recorders.h"
#include "validation/validator.h"

namespace QV_2_9 {
namespace {

using quiver_test::IsInvalidFile;
using quiver_test::IsValidFile;
using quiver_test::RecordingConfidenceLevelPolicy;
using quiver_test::TempTree;

TEST(ValidatorSpecialFilesPosix, PipeCannotBeOpenedAndDoesNotBlock) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  EXPECT_THAT(validator.validate(tree.addUnreadableFile("pipe").c_str())->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%CantOpenFile"));
}

TEST(ValidatorSpecialFilesPosix, DeviceCannotBeOpened) {
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  EXPECT_THAT(validator.validate(L"/dev/null")->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%CantOpenFile"));
}

TEST(ValidatorSpecialFilesPosix, LinkToAFileIsAFile) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  tree.addFile("a.so");
  const std::wstring link = tree.addLink("link.so", "a.so");
  EXPECT_THAT(validator.validate(link.c_str())->getValidFile(), IsValidFile(link, 1, 7));
}

TEST(ValidatorSpecialFilesPosix, LinkToADirectoryIsADirectory) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  tree.addDirectory("dir");
  EXPECT_THAT(validator.validate(tree.addLink("link", "dir").c_str())->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%FileIsDirectory"));
}

TEST(ValidatorSpecialFilesPosix, DanglingLinkDoesNotExist) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  EXPECT_THAT(validator.validate(tree.addLink("link", "missing").c_str())->getInvalidFile(),
              IsInvalidFile(ecUnusable, L"%FileDoesNotExist"));
}

TEST(ValidatorSpecialFilesPosix, NameThatIsNoTextStaysUsable) {
  TempTree tree;
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  const std::wstring file = tree.addFile("caf\xe9.c");
  EXPECT_THAT(validator.validate(file.c_str())->getValidFile(), IsValidFile(file, 1, 7));
}

TEST(ValidatorSpecialFilesPosix, BackslashEndsANameLikeAnyCharacter) {
  TempTree tree;
  tree.addDirectory("dir");
  RecordingConfidenceLevelPolicy policy;
  Validator validator(nullptr, policy, scBinaryFiles);
  const std::wstring file = tree.addFile("dir\\");
  EXPECT_TRUE(validator.validate(file.c_str())->getValidFile());
}

}  // namespace
}  // namespace QV_2_9
