// Times before 1970, which not every system can give a file.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quiver/source_file_validators.h"
#include "support/temp_tree.h"
#include "validation/recorders.h"

namespace QV_2_9 {
namespace {

using quiver_test::ErrorInfoRecorder;
using quiver_test::TempTree;
using ::testing::ElementsAre;

TEST(SourceFilesBefore1970Posix, CountAsNewerThanAnyReferenceAfter) {
  TempTree tree;
  const std::wstring reference = tree.addFile("app");
  const std::wstring file = tree.addFile("a.cpp");
  tree.setModificationTime("a.cpp", -1);
  SourceFileUpToDateCheckValidator validator(reference.c_str());
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(validator.validate(file.c_str(), errorInfo), vrInvalid);
  EXPECT_THAT(errorInfo.calls(), ElementsAre(L"text %SourceFileUpToDate", L"code 1"));
}

TEST(SourceFilesBefore1970Posix, AreOldBesideAReferenceOfTheirKind) {
  TempTree tree;
  const std::wstring reference = tree.addFile("app");
  const std::wstring file = tree.addFile("a.cpp");
  tree.setModificationTime("app", -1);
  tree.setModificationTime("a.cpp", -2);
  SourceFileUpToDateCheckValidator validator(reference.c_str());
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(validator.validate(file.c_str(), errorInfo), vrUndecided);
  tree.setModificationTime("a.cpp", 1000000000);
  EXPECT_EQ(validator.validate(file.c_str(), errorInfo), vrUndecided);
}

TEST(SourceFilesBefore1970Posix, MatchTheirRecordedTimeInWholeSecondsRoundedDown) {
  TempTree tree;
  const std::wstring file = tree.addFile("a.cpp", "abc");
  tree.setModificationTime("a.cpp", -2, 500000000);
  ErrorInfoRecorder errorInfo;
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(-2, 3).validate(file.c_str(), errorInfo), vrValid);
  EXPECT_EQ(SourceFileTimeAndSizeMatchValidator(-1, 3).validate(file.c_str(), errorInfo),
            vrInvalid);
}

}  // namespace
}  // namespace QV_2_9
