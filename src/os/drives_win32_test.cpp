// Drives and devices as this machine has them.

#include <windows.h>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "os/drives.h"

namespace QV_2_9 {
namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::StartsWith;

std::vector<std::wstring> drivesHere() {
  std::vector<std::wstring> drives;
  EXPECT_TRUE(getLogicalDrives(win::windowsSystem(), drives));
  return drives;
}

/// "C:" for a machine that was installed in C:\Windows.
std::wstring systemDrive() {
  wchar_t directory[MAX_PATH] = {};
  EXPECT_NE(GetSystemWindowsDirectoryW(directory, MAX_PATH), 0u);
  return std::wstring(directory, 2);
}

TEST(GetLogicalDrivesWindows, GivesTheDriveOfTheSystem) {
  EXPECT_THAT(drivesHere(), Contains(systemDrive() + L"\\"));
}

// Asks the system in another way: a bit for each letter.
TEST(GetLogicalDrivesWindows, GivesEveryLetterThatMayHoldFilesInTheirOrder) {
  std::vector<std::wstring> expected;
  for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
    const std::wstring root = std::wstring(1, letter) + L":\\";
    const UINT type = GetDriveTypeW(root.c_str());
    if (GetLogicalDrives() & (1u << (letter - L'A')) && type >= DRIVE_FIXED)
      expected.push_back(root);
  }
  EXPECT_EQ(drivesHere(), expected);
}

TEST(QueryDosDeviceWindows, GivesTheDeviceOfEachFixedDrive) {
  int fixed = 0;
  for (const std::wstring& root : drivesHere()) {
    if (GetDriveTypeW(root.c_str()) != DRIVE_FIXED)
      continue;
    ++fixed;
    // A letter that was given to a directory stands for that.
    EXPECT_THAT(queryDosDevice(win::windowsSystem(), root.substr(0, 2).c_str()),
                AnyOf(StartsWith(L"\\Device\\"), StartsWith(L"\\??\\")));
  }
  EXPECT_GT(fixed, 0);
}

TEST(QueryDosDeviceWindows, IsEmptyForALetterWithoutADrive) {
  for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
    const std::wstring drive = std::wstring(1, letter) + L':';
    if (!(GetLogicalDrives() & (1u << (letter - L'A')))) {
      EXPECT_EQ(queryDosDevice(win::windowsSystem(), drive.c_str()), L"") << drive;
      return;
    }
  }
  FAIL() << "every letter has a drive";
}

}  // namespace
}  // namespace QV_2_9
