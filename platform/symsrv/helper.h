// The helper behind the interface: registered elements, and one downloader for the process.

#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "symsrv/downloader.h"
#include "symsrv/symsrv_helper.h"

namespace symsrv_1_0::internal {

/// Implements the object-model operations. Counts may change on any thread.
template <class T>
class Counted : public T {
 public:
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  std::int32_t getVersion() override { return 1; }
  std::uint32_t addRef() override { return ++m_count; }
  std::uint32_t release() override {
    const std::uint32_t count = --m_count;
    if (count == 0)
      delete this;
    return count;
  }

 protected:
  Counted() = default;
  ~Counted() override = default;

 private:
  std::atomic<std::uint32_t> m_count{0};
};

class SymbolFileInfo final : public Counted<ISymbolFileInfo> {
 public:
  explicit SymbolFileInfo(std::wstring path) : m_path(std::move(path)) {}
  const wchar_t* getPath() override { return m_path.c_str(); }

 private:
  std::wstring m_path;
};

class SymSrvHelper final : public Counted<ISymSrvHelper> {
 public:
  SymSrvHelper(Settings settings, std::unique_ptr<ITransport> transport, Report report);

  void addServer(const wchar_t* element) override;
  void clearServers() override;
  QV_2_9::ObjectPtr<ISymbolFileInfo> download(const wchar_t* binaryFile,
                                              IDownloadProgressCallback* callback) override;
  bool findNear(const wchar_t* binaryFile,
                const wchar_t* const* elements,
                std::int32_t count,
                IStoreWatcher* watcher,
                QV_2_9::ObjectPtr<ISymbolFileInfo>* file) override;

 private:
  std::vector<Chain> chains() const;
  std::vector<std::string> refusals() const;

  const Report m_report;
  Downloader m_downloader;
  mutable std::mutex m_lock;
  ChainList m_servers;                  // guarded by m_lock
  std::vector<std::string> m_refusals;  // why elements are not in m_servers; guarded by m_lock
};

}  // namespace symsrv_1_0::internal
