// Fetching symbol files from the servers of a symbol path, the same on every system.
//
// One download at a time in the whole process: the helper has one list of servers. The helper is
// made when the first server is named, kept, and released with its owner, the routines object.
// Who finds a download under way waits for it only when servers have to be asked or files copied.

#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "symsrv/symsrv_helper.h"

#include "quiver/symbol_download.h"

namespace QV_2_9 {

/// Passes progress on to the caller's object. Without one, nothing is asked and nothing canceled.
class SymSrvDownloadProgressCallback final : public symsrv_1_0::IDownloadProgressCallback {
 public:
  /// Both may be null; neither is owned.
  explicit SymSrvDownloadProgressCallback(ISymbolDownloadProgress* progress,
                                          symsrv_1_0::IStoreWatcher* watcher = nullptr)
      : m_progress(progress), m_watcher(watcher) {}

  void onStart(int value, bool* cancel) override;
  void onProgress(int value, bool* cancel) override;
  void onFinish() override;
  symsrv_1_0::IStoreWatcher* storeWatcher() override { return m_watcher; }

 private:
  ISymbolDownloadProgress* m_progress;
  symsrv_1_0::IStoreWatcher* m_watcher;
};

namespace internal {

class SymbolDownload final {
 public:
  SymbolDownload() = default;

  SymbolDownload(const SymbolDownload&) = delete;
  SymbolDownload& operator=(const SymbolDownload&) = delete;

  /// Returns the local path of the binary's symbol file. Empty when `binaryFile` is null or empty,
  /// when no element names a server, when there is no helper, and when no server had the file.
  /// `watcher` hears of the stores; it may be null.
  std::wstring fetch(const wchar_t* binaryFile,
                     const std::vector<std::wstring>& elements,
                     ISymbolDownloadProgress* progress,
                     symsrv_1_0::IStoreWatcher* watcher = nullptr);

  /// The same over the elements of the environment's symbol path.
  std::wstring fetchFromEnvironment(const wchar_t* binaryFile,
                                    ISymbolDownloadProgress* progress,
                                    symsrv_1_0::IStoreWatcher* watcher = nullptr);

 private:
  bool registerServers(const std::vector<std::wstring>& elements);
  bool isAnsweredNear(const wchar_t* binaryFile,
                      const std::vector<std::wstring>& elements,
                      symsrv_1_0::IStoreWatcher* watcher,
                      std::wstring& path) const;

  QV_2_9::ObjectPtr<symsrv_1_0::ISymSrvHelper> m_helper;           // guarded by the download lock
  std::atomic<symsrv_1_0::ISymSrvHelper*> m_knownHelper{nullptr};  // the same, for anybody
};

using SymSrvHelperFactory = ObjectPtr<symsrv_1_0::ISymSrvHelper> (*)();

/// Replaces what makes helpers, for tests; null puts the module's own back. No download may run.
void setSymSrvHelperFactoryForTest(SymSrvHelperFactory factory);

}  // namespace internal
}  // namespace QV_2_9
