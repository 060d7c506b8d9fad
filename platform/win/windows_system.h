// The calls of Windows about drives, behind an interface: what is made of their answers can then be
// tested on every system.
//
// Each operation is the call of the same name and answers as it does; see its documentation. None
// of them is ever made on another system.

#pragma once

#include <cstdint>

namespace win {

/// Stateless: any thread may call.
class IWindowsSystem {
 public:
  /// GetLogicalDriveStringsW: writes the roots of all drives, each with an end mark, and one more.
  /// Returns the number of characters without that last one; the size needed when `size` is too
  /// small; 0 on failure.
  virtual std::uint32_t logicalDriveStrings(std::uint32_t size, wchar_t* buffer) = 0;

  /// GetDriveTypeW: 0 unknown, 1 no such root, 2 removable, 3 fixed, 4 remote, 5 optical, 6 memory.
  virtual std::uint32_t driveType(const wchar_t* root) = 0;

  /// QueryDosDeviceW: writes the device names of a drive ("C:"), each with an end mark, the current
  /// one first. Returns the number of characters, 0 on failure.
  virtual std::uint32_t queryDosDevice(const wchar_t* drive,
                                       wchar_t* buffer,
                                       std::uint32_t size) = 0;

 protected:
  ~IWindowsSystem() = default;
};

/// Returns the system this process runs on. Windows builds only.
IWindowsSystem& windowsSystem();

}  // namespace win
