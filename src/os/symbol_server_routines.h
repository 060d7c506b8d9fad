// What systems with symbol servers share: downloads, and names that need no translation.

#pragma once

#include "os/os_common_routines.h"
#include "os/symbol_download.h"

namespace QV_2_9 {

/// Derive once per system and supply the directories. Keeps no state but the downloads', which lock
/// themselves: any thread may call.
class SymbolServerRoutines : public OSCommonRoutines, public IWatchedDownloads {
 public:
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

 protected:
  ~SymbolServerRoutines() = default;

 private:
  internal::SymbolDownload m_download;
};

}  // namespace QV_2_9
