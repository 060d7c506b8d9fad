// The routines on Windows. Drives are asked about through an interface and variables through the
// file library, so the class can be tested on every system.

#pragma once

#include "win/windows_system.h"

#include "os/symbol_server_routines.h"

namespace QV_2_9 {

/// The directories:
///
///   category   directories, in order                                               tree
///   binaries   %SYSTEMROOT%\System32                                               no
///              the elements of PATH                                                no
///              %SYSTEMROOT%\System32\Drivers                                       no
///   symbols    the elements of _NT_SYMBOL_PATH                                     no
///              %SYSTEMROOT%\Symbols                                                yes
///              %SYSTEMROOT%\System32\Drivers                                       no
class WindowsSpecificRoutines final : public SymbolServerRoutines {
 public:
  /// `system` is borrowed for the life of this object.
  explicit WindowsSpecificRoutines(win::IWindowsSystem& system) : m_system(system) {}

  /// Offers, until one is accepted:
  ///
  ///   name                                       offered
  ///   \??\C:\dir\f.dll                           C:\dir\f.dll
  ///   \SystemRoot\System32\f.sys                 System32\f.sys
  ///   \Device\LanmanRedirector\srv\share\f.dll   \\srv\share\f.dll
  ///   \Windows\f.dll                             C:\Windows\f.dll, and so on each drive
  ///   \Device\HarddiskVolume2\a\b\f.dll          C:\a\b\f.dll, C:\b\f.dll, C:\f.dll, when that is
  ///                                              the device of C:
  ///
  /// Nothing for the system type 2: the name was not recorded on Windows.
  bool findByAbsoluteName(const wchar_t* name,
                          ISearchResultsContainer& results,
                          std::int32_t osType) override;
  void splitPathList(const wchar_t* list, std::vector<std::wstring>& out) override;
  void addSystemBinaryDirs(ISearchDirectoryContainer& dirs) override;
  void addCommonSystemDirs(ISearchDirectoryContainer& dirs) override;
  void addDriverDirs(ISearchDirectoryContainer& dirs) override;
  void addSymbolPathDirs(ISearchDirectoryContainer& dirs) override;

 private:
  win::IWindowsSystem& m_system;
};

}  // namespace QV_2_9
