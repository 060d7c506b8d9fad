// Reads the system's lists of texts.

#include "os/drives.h"

#include <cstdint>

namespace QV_2_9 {
namespace {

constexpr std::uint32_t kDeviceNameSize = 260;

bool mayHoldFiles(std::uint32_t driveType) {
  constexpr std::uint32_t kUnknown = 0;
  constexpr std::uint32_t kNoRoot = 1;
  constexpr std::uint32_t kRemovable = 2;
  return driveType != kUnknown && driveType != kNoRoot && driveType != kRemovable;
}

}  // namespace

bool getLogicalDrives(win::IWindowsSystem& system, std::vector<std::wstring>& drives) {
  const std::uint32_t size = system.logicalDriveStrings(0, nullptr);
  if (size == 0)
    return false;
  // End marks that the answer cannot overwrite: a drive may appear between the calls.
  std::wstring roots(std::size_t{size} + 2, L'\0');
  if (system.logicalDriveStrings(size, roots.data()) == 0)
    return false;
  for (const wchar_t* root = roots.c_str(); *root; root += std::wstring(root).size() + 1)
    if (mayHoldFiles(system.driveType(root)))
      drives.emplace_back(root);
  return true;
}

std::wstring queryDosDevice(win::IWindowsSystem& system, const wchar_t* drive) {
  wchar_t names[kDeviceNameSize + 1] = {};
  return system.queryDosDevice(drive, names, kDeviceNameSize) == 0 ? L"" : names;
}

}  // namespace QV_2_9
