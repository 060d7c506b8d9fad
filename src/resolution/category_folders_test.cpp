// Tests of category_folders.h.

#include "resolution/category_folders.h"

#include <gtest/gtest.h>

namespace QV_2_9::internal {
namespace {

TEST(CategoryFolders, EveryCategoryHasItsFolder) {
  EXPECT_STREQ(categoryFolder(scBinaryFiles), L"binaries");
  EXPECT_STREQ(categoryFolder(scSymbolFiles), L"symbols");
  EXPECT_STREQ(categoryFolder(scSourceFiles), L"sources");
  EXPECT_STREQ(categoryFolder(scAllFiles), L"all");
}

TEST(CategoryFolders, AnythingElseIsFiledUnderAll) {
  EXPECT_STREQ(categoryFolder(0), L"all");
  EXPECT_STREQ(categoryFolder(5), L"all");
  EXPECT_STREQ(categoryFolder(-1), L"all");
}

}  // namespace
}  // namespace QV_2_9::internal
