// The real calls.

#include <windows.h>

#include "win/windows_system.h"

namespace win {
namespace {

class RealSystem final : public IWindowsSystem {
 public:
  std::uint32_t logicalDriveStrings(std::uint32_t size, wchar_t* buffer) override {
    return GetLogicalDriveStringsW(size, buffer);
  }
  std::uint32_t driveType(const wchar_t* root) override { return GetDriveTypeW(root); }
  std::uint32_t queryDosDevice(const wchar_t* drive, wchar_t* buffer, std::uint32_t size) override {
    return QueryDosDeviceW(drive, buffer, size);
  }
};

RealSystem g_system;

}  // namespace

IWindowsSystem& windowsSystem() {
  return g_system;
}

}  // namespace win
