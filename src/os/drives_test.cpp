// Drives and devices, asked of a machine that is made up.

#include "os/drives.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "os/fake_windows_system.h"

namespace QV_2_9 {
namespace {

using quiver_test::FakeDrive;
using quiver_test::FakeWindowsSystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(GetLogicalDrives, KeepsFixedRemoteOpticalAndMemoryDrivesInOrder) {
  FakeWindowsSystem system({{L"A:\\", 2, L""},
                            {L"Z:\\", 4, L""},
                            {L"C:\\", 3, L""},
                            {L"D:\\", 5, L""},
                            {L"E:\\", 0, L""},
                            {L"F:\\", 1, L""},
                            {L"R:\\", 6, L""}});
  std::vector<std::wstring> drives;
  EXPECT_TRUE(getLogicalDrives(system, drives));
  EXPECT_THAT(drives, ElementsAre(L"Z:\\", L"C:\\", L"D:\\", L"R:\\"));
}

TEST(GetLogicalDrives, FailsWhenEitherCallFails) {
  for (const int failing : {1, 2}) {
    FakeWindowsSystem system({{L"C:\\", 3, L""}});
    system.failingListing = failing;
    std::vector<std::wstring> drives;
    EXPECT_FALSE(getLogicalDrives(system, drives)) << failing;
    EXPECT_THAT(drives, IsEmpty());
  }
}

// The list no longer fits then, and the system writes nothing.
TEST(GetLogicalDrives, GivesNoneWhenADriveComesBetweenTheCalls) {
  FakeWindowsSystem system({{L"C:\\", 3, L""}});
  system.arrival = FakeDrive{L"E:\\", 3, L""};
  std::vector<std::wstring> drives;
  EXPECT_TRUE(getLogicalDrives(system, drives));
  EXPECT_THAT(drives, IsEmpty());
}

TEST(QueryDosDevice, GivesTheFirstOfSeveralNames) {
  FakeWindowsSystem system({{L"C:\\", 3, L"\\Device\\HarddiskVolume2"}});
  EXPECT_EQ(queryDosDevice(system, L"C:"), L"\\Device\\HarddiskVolume2");
}

TEST(QueryDosDevice, IsEmptyWhenTheSystemDoesNotTell) {
  FakeWindowsSystem system({{L"C:\\", 3, L""}});
  EXPECT_EQ(queryDosDevice(system, L"C:"), L"");
  EXPECT_EQ(queryDosDevice(system, L"X:"), L"");
}

// More than 260 characters are not asked for.
TEST(QueryDosDevice, IsEmptyForANameThatIsTooLong) {
  FakeWindowsSystem system({{L"C:\\", 3, std::wstring(300, L'x')}});
  EXPECT_EQ(queryDosDevice(system, L"C:"), L"");
}

}  // namespace
}  // namespace QV_2_9
