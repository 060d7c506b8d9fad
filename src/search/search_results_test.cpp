// Tests of search_results.h.

#include "search/search_results.h"

#include <gtest/gtest.h>

#include "os/path_utils.h"

namespace QV_2_9 {
namespace {

TEST(ValidFile, ReturnsWhatItWasMadeOf) {
  const ObjectPtr<IValidFile> file = new ValidFile(L"C:\\x\\a.dll", 2, 6);
  EXPECT_STREQ(file->getPath(), L"C:\\x\\a.dll");
  EXPECT_EQ(file->getConfidenceLevel(), 2);
  EXPECT_EQ(file->getStep(), 6);
  EXPECT_EQ(file->getVersion(), 1);
}

TEST(InvalidFile, KeepsTheCanonicalAbsolutePath) {
  const ObjectPtr<IInvalidFile> file = new InvalidFile(L"/x/y/../a.dll", 1, L"%Reason", 4);
  EXPECT_STREQ(file->getPath(), toCanonicalAbsolutePath(L"/x/a.dll", false).c_str());
  EXPECT_EQ(file->getErrorCode(), 1);
  EXPECT_STREQ(file->getErrorMessage(), L"%Reason");
  EXPECT_EQ(file->getStep(), 4);
}

TEST(InvalidFile, TakesNullTextsAsEmptyOnes) {
  const ObjectPtr<IInvalidFile> file = new InvalidFile(nullptr, 0, nullptr, 7);
  EXPECT_STREQ(file->getPath(), L"");
  EXPECT_STREQ(file->getErrorMessage(), L"");
}

TEST(InvalidFile, MakesAConfirmedFileOfTheSamePathAndStep) {
  const ObjectPtr<IInvalidFile> invalid = new InvalidFile(L"/x/a.dll", 1, L"%Reason", 4);
  const ObjectPtr<IValidFile> valid = invalid->makeValid();
  EXPECT_STREQ(valid->getPath(), invalid->getPath());
  EXPECT_EQ(valid->getConfidenceLevel(), 0);
  EXPECT_EQ(valid->getStep(), 4);
  EXPECT_EQ(invalid->getErrorCode(), 1);
  EXPECT_STREQ(invalid->getErrorMessage(), L"%Reason");
}

TEST(InvalidFile, MakesFilesThatOutliveIt) {
  ObjectPtr<IInvalidFile> invalid = new InvalidFile(L"/x/a.dll", 1, L"", 4);
  const ObjectPtr<IValidFile> valid = invalid->makeValid();
  const std::wstring path = invalid->getPath();
  invalid = nullptr;
  EXPECT_EQ(valid->getPath(), path);
}

TEST(ValidatedFile, HoldsOneOfTheTwo) {
  const ObjectPtr<IValidFile> valid = new ValidFile(L"/a", 0, 1);
  const ObjectPtr<IInvalidFile> invalid = new InvalidFile(L"/b", 0, L"", 1);
  const ObjectPtr<IValidatedFile> accepted = new ValidatedFile(valid, nullptr);
  const ObjectPtr<IValidatedFile> rejected = new ValidatedFile(nullptr, invalid);
  EXPECT_EQ(accepted->getValidFile().get(), valid.get());
  EXPECT_FALSE(accepted->getInvalidFile());
  EXPECT_FALSE(rejected->getValidFile());
  EXPECT_EQ(rejected->getInvalidFile().get(), invalid.get());
}

}  // namespace
}  // namespace QV_2_9
