// See symbol_server_routines.h.

#include "os/symbol_server_routines.h"

#include "os/symbol_path.h"

namespace QV_2_9 {

bool SymbolServerRoutines::isSymbolServerPath(const wchar_t* path) {
  return internal::isSymbolServerElement(path);
}

std::wstring SymbolServerRoutines::downloadSymbolFile(const wchar_t* binaryFile,
                                                      const std::vector<std::wstring>& symbolPath,
                                                      ISymbolDownloadProgress* progress) {
  return m_download.fetch(binaryFile, symbolPath, progress);
}

std::wstring SymbolServerRoutines::downloadSymbolFileFromEnvironment(
    const wchar_t* binaryFile, ISymbolDownloadProgress* progress) {
  return m_download.fetchFromEnvironment(binaryFile, progress);
}

std::wstring SymbolServerRoutines::mapFileName(const wchar_t* name, std::int32_t) {
  return name ? name : L"";
}

std::wstring SymbolServerRoutines::downloadWatched(const wchar_t* binaryFile,
                                                   const std::vector<std::wstring>* symbolPath,
                                                   ISymbolDownloadProgress* progress,
                                                   symsrv_1_0::IStoreWatcher& watcher) {
  return symbolPath ? m_download.fetch(binaryFile, *symbolPath, progress, &watcher)
                    : m_download.fetchFromEnvironment(binaryFile, progress, &watcher);
}

}  // namespace QV_2_9
