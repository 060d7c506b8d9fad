// The routines on Linux. No system call is made here, so the class can be tested on every system.

#pragma once

#include "os/os_common_routines.h"
#include "os/symbol_download.h"

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
class LinuxSpecificRoutines final : public OSCommonRoutines {
 public:
  bool findByAbsoluteName(const wchar_t* name,
                          ISearchResultsContainer& results,
                          std::int32_t osType) override;
  bool isSymbolServerPath(const wchar_t* path) override;
  std::wstring downloadSymbolFile(const wchar_t* binaryFile,
                                  const std::vector<std::wstring>& symbolPath,
                                  ISymbolDownloadProgress* progress) override;
  std::wstring downloadSymbolFileFromEnvironment(const wchar_t* binaryFile,
                                                 ISymbolDownloadProgress* progress) override;
  std::wstring mapFileName(const wchar_t* name, std::int32_t osType) override;
  std::wstring downloadWatched(const wchar_t* binaryFile,
                               const std::vector<std::wstring>* symbolPath,
                               ISymbolDownloadProgress* progress,
                               symsrv_1_0::IStoreWatcher& watcher) override;

  void splitPathList(const wchar_t* list, std::vector<std::wstring>& out) override;
  void addSystemBinaryDirs(ISearchDirectoryContainer& dirs) override;
  void addCommonSystemDirs(ISearchDirectoryContainer& dirs) override;
  void addDriverDirs(ISearchDirectoryContainer& dirs) override;
  void addSymbolPathDirs(ISearchDirectoryContainer& dirs) override;

 private:
  internal::SymbolDownload m_download;
};

}  // namespace QV_2_9
