// The one routines object, and the place where tests put their own.

#include "os/os_specific_routines.h"

#include <gtest/gtest.h>

#include "os/linux_specific_routines.h"

namespace QV_2_9 {
namespace {

TEST(GetOSSpecificRoutines, IsOneObject) {
  EXPECT_NE(getOSSpecificRoutines(), nullptr);
  EXPECT_EQ(getOSSpecificRoutines(), getOSSpecificRoutines());
  EXPECT_EQ(getOSSpecificRoutines(), &internal::systemRoutines());
}

TEST(GetOSSpecificRoutines, ReturnsWhatATestPutsInItsPlace) {
  LinuxSpecificRoutines replacement;
  internal::setOSSpecificRoutinesForTest(&replacement);
  EXPECT_EQ(getOSSpecificRoutines(), &replacement);
  internal::setOSSpecificRoutinesForTest(nullptr);
  EXPECT_EQ(getOSSpecificRoutines(), &internal::systemRoutines());
}

}  // namespace
}  // namespace QV_2_9
