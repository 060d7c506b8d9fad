// The values recorded of the analysed system.

#include "config/environment_info.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace QV_2_9 {
namespace {

TEST(EnvironmentInfo, BeginsWithZeros) {
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  EXPECT_EQ(info->getOSType(), 0);
  EXPECT_EQ(info->getExtraInfo(), 0);
}

TEST(EnvironmentInfo, BeginsWithOneReferenceAndVersionOne) {
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  EXPECT_EQ(info->addRef(), 2u);
  EXPECT_EQ(info->release(), 1u);
  EXPECT_EQ(info->getVersion(), 1);
}

class EnvironmentInfoValue : public testing::TestWithParam<std::int32_t> {};

TEST_P(EnvironmentInfoValue, ComesBackAsItWasSet) {
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  info->setOSType(GetParam());
  EXPECT_EQ(info->getOSType(), GetParam());
  EXPECT_EQ(info->getExtraInfo(), 0);
  info->setOSType(0);
  info->setExtraInfo(GetParam());
  EXPECT_EQ(info->getExtraInfo(), GetParam());
  EXPECT_EQ(info->getOSType(), 0);
}

INSTANTIATE_TEST_SUITE_P(Values,
                         EnvironmentInfoValue,
                         testing::Values(1,
                                         2,
                                         -1,
                                         std::numeric_limits<std::int32_t>::min(),
                                         std::numeric_limits<std::int32_t>::max()));

TEST(EnvironmentInfo, IsHandedOnAsReadOnly) {
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  const ObjectPtr<IEnvironmentInfo> readOnly = info;
  info->setOSType(2);
  EXPECT_EQ(readOnly->getOSType(), 2);
}

}  // namespace
}  // namespace QV_2_9
