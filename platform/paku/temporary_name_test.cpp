#include "paku/temporary_name.h"

#include <gtest/gtest.h>

namespace PAKU_3_1::internal {
namespace {

TEST(TemporaryName, IsKnownAgain) {
  EXPECT_EQ(temporaryName(1234, 5), ".paku-1234-5.tmp");
  EXPECT_TRUE(isTemporaryName<char>(temporaryName(1234, 5)));
  EXPECT_TRUE(isTemporaryName<char>(temporaryName(4294967295, 4294967295)));
  EXPECT_TRUE(isTemporaryName<wchar_t>(L".paku-1-0.tmp"));
}

TEST(TemporaryName, IsNoOtherName) {
  for (const char* name : {"",
                           ".paku-",
                           ".paku-1.tmp",
                           ".paku--1.tmp",
                           ".paku-1-.tmp",
                           ".paku-1-0.tmp2",
                           ".paku-1-0",
                           "paku-1-0.tmp",
                           "a.paku-1-0.tmp",
                           ".paku-x-0.tmp",
                           ".paku-1-0x.tmp",
                           ".PAKU-1-0.TMP"})
    EXPECT_FALSE(isTemporaryName<char>(name)) << name;
}

}  // namespace
}  // namespace PAKU_3_1::internal
