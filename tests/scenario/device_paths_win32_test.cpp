// Binaries that were recorded by the kernel's names of their places, found through the drives and
// devices that this machine really has.

#include <windows.h>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>

#include "scenario/viewer.h"
#include "support/matchers.h"

namespace QV_2_9 {
namespace {

using quiver_test::IsValidFile;
using quiver_test::ScopedVariable;
using quiver_test::TempTree;

/// "\Device\HarddiskVolume2" for "C:".
std::wstring deviceOf(const std::wstring& drive) {
  wchar_t names[1024] = {};
  EXPECT_NE(QueryDosDeviceW(drive.c_str(), names, 1024), 0u) << drive;
  return names;
}

class DevicePathsWindows : public quiver_test::Viewer {
 protected:
  void expectFoundByDevice(const std::wstring& file) {
    const std::wstring recorded = deviceOf(file.substr(0, 2)) + file.substr(2);
    EXPECT_THAT(findBin(recorded), IsValidFile(file, 1, 3)) << recorded;
  }
};

TEST_F(DevicePathsWindows, FindTheFileOnTheDriveOfTheDevice) {
  expectFoundByDevice(m_tree.addFile("sub/f.dll", "x"));
}

TEST_F(DevicePathsWindows, FindTheFileWithoutDirectoriesThatAreNotHere) {
  const std::wstring file = m_tree.addFile("f.dll", "x");
  const std::wstring drive = file.substr(0, 2);
  const std::wstring recorded = deviceOf(drive) + L"\\not\\here" + file.substr(2);
  EXPECT_THAT(findBin(recorded), IsValidFile(file, 1, 3));
}

TEST_F(DevicePathsWindows, FindTheFileBehindTheObjectPrefix) {
  const std::wstring file = m_tree.addFile("f.dll", "x");
  EXPECT_THAT(findBin(L"\\??\\" + file), IsValidFile(file, 1, 3));
}

TEST_F(DevicePathsWindows, FindTheFileOnTheDriveThatHasARootedName) {
  const std::wstring file = m_tree.addFile("f.dll", "x");
  EXPECT_THAT(findBin(file.substr(2)), IsValidFile(file, 1, 3));
}

// Where tests run under an emulator, Z: is the host's root and a device of its own.
TEST_F(DevicePathsWindows, FindTheFileOnASecondDrive) {
  if (!std::filesystem::is_directory(L"Z:\\tmp"))
    GTEST_SKIP() << "this machine has no directory Z:\\tmp";
  const ScopedVariable temporary("TMP", L"Z:\\tmp");
  TempTree tree;
  const std::wstring file = tree.addFile("f.dll", "x");
  ASSERT_EQ(file.substr(0, 2), L"Z:");
  ASSERT_NE(deviceOf(L"Z:"), deviceOf(L"C:"));
  expectFoundByDevice(file);
  EXPECT_THAT(findBin(L"\\??\\" + file), IsValidFile(file, 1, 3));
}

}  // namespace
}  // namespace QV_2_9
