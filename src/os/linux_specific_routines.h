// The routines on Linux. No system call is made here, so the class can be tested on every system.

#pragma once

#include "os/symbol_server_routines.h"

namespace QV_2_9 {

/// Recorded names are not translated: there are no drives or device paths to translate them to.
///
///   category   directories, in order                                               tree
///   binaries   the elements of PATH                                                no
///              /usr/local/lib, /lib, /usr/lib, then those per architecture         no
///              /lib/modules/RELEASE                                                yes
///   symbols    the elements of _NT_SYMBOL_PATH                                     no
///              /usr/lib/debug                                                      yes
///              /lib/modules/RELEASE                                                yes
class LinuxSpecificRoutines final : public SymbolServerRoutines {
 public:
  bool findByAbsoluteName(const wchar_t* name,
                          ISearchResultsContainer& results,
                          std::int32_t osType) override;
  void splitPathList(const wchar_t* list, std::vector<std::wstring>& out) override;
  void addSystemBinaryDirs(ISearchDirectoryContainer& dirs) override;
  void addCommonSystemDirs(ISearchDirectoryContainer& dirs) override;
  void addDriverDirs(ISearchDirectoryContainer& dirs) override;
  void addSymbolPathDirs(ISearchDirectoryContainer& dirs) override;
};

}  // namespace QV_2_9
