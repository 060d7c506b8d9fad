// The drives of a Windows machine and the devices behind them.

#pragma once

#include <string>
#include <vector>

#include "win/windows_system.h"

namespace QV_2_9 {

/// Gives the roots ("C:\") of the drives on which recorded files may lie, in the system's order:
/// fixed, remote, optical and memory drives. Removable ones are left out, since nobody wants a
/// lookup to ask for a medium. Returns false when the system does not tell.
bool getLogicalDrives(win::IWindowsSystem& system, std::vector<std::wstring>& drives);

/// Returns the current device of a drive: "\Device\HarddiskVolume2" for "C:". Empty when the system
/// does not tell.
std::wstring queryDosDevice(win::IWindowsSystem& system, const wchar_t* drive);

}  // namespace QV_2_9
