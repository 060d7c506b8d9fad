// What only a running Linux system tells.

#include <gmock/gmock.h>

#include "paku/environment.h"

#include "os/directory_recorder.h"
#include "os/linux_specific_routines.h"

namespace QV_2_9 {
namespace {

TEST(LinuxSpecificRoutinesPosix, SearchesTheTreeOfTheRunningKernelsModules) {
  const std::wstring release = PAKU_3_1::systemRelease();
  ASSERT_NE(release, L"");
  LinuxSpecificRoutines routines;
  quiver_test::DirectoryRecorder dirs;
  routines.addDriverDirs(dirs);
  EXPECT_THAT(dirs.added(),
              ::testing::ElementsAre(::testing::Pair(L"/lib/modules/" + release, true)));
}

}  // namespace
}  // namespace QV_2_9
