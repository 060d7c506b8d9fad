// Drives of a Windows machine that a test makes up.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "win/windows_system.h"

namespace quiver_test {

struct FakeDrive {
  std::wstring root;    ///< "C:\"
  std::uint32_t type;   ///< 3 is a fixed drive.
  std::wstring device;  ///< Empty: the system does not tell.
};

class FakeWindowsSystem final : public win::IWindowsSystem {
 public:
  explicit FakeWindowsSystem(std::vector<FakeDrive> drives) : m_drives(std::move(drives)) {}

  std::uint32_t logicalDriveStrings(std::uint32_t size, wchar_t* buffer) override {
    if (++m_listings == failingListing)
      return 0;
    if (m_listings == 2 && arrival)
      m_drives.push_back(*arrival);
    std::wstring roots;
    for (const FakeDrive& drive : m_drives) roots += drive.root + L'\0';
    const auto length = static_cast<std::uint32_t>(roots.size());
    if (size < length + 1)
      return length + 1;
    roots.copy(buffer, length);
    buffer[length] = L'\0';
    return length;
  }

  std::uint32_t driveType(const wchar_t* root) override {
    for (const FakeDrive& drive : m_drives)
      if (drive.root == root)
        return drive.type;
    return 1;
  }

  /// A second, older device name stands behind the first, as the system has it.
  std::uint32_t queryDosDevice(const wchar_t* name, wchar_t* buffer, std::uint32_t size) override {
    for (const FakeDrive& drive : m_drives) {
      const std::wstring names = drive.device + L'\0' + L"\\Device\\Former" + L'\0' + L'\0';
      if (drive.root.substr(0, 2) != name || drive.device.empty() || size < names.size())
        continue;
      names.copy(buffer, names.size());
      return static_cast<std::uint32_t>(names.size());
    }
    return 0;
  }

  /// Which of the two calls for the drive list fails: 1 or 2; 0 for neither.
  int failingListing = 0;

  /// A drive that comes between the two calls.
  std::optional<FakeDrive> arrival;

 private:
  std::vector<FakeDrive> m_drives;
  int m_listings = 0;
};

}  // namespace quiver_test
