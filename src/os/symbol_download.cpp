// Registers servers and downloads, under the download lock.

#include "os/symbol_download.h"

#include <algorithm>

#include "core/lock.h"
#include "os/symbol_path.h"

namespace QV_2_9 {

void SymSrvDownloadProgressCallback::onStart(int value, bool* cancel) {
  if (!m_progress)
    return;
  m_progress->start(value);
  *cancel = m_progress->isCanceled();
}

void SymSrvDownloadProgressCallback::onProgress(int value, bool* cancel) {
  if (!m_progress)
    return;
  m_progress->progress(value);
  *cancel = m_progress->isCanceled();
}

void SymSrvDownloadProgressCallback::onFinish() {
  if (m_progress)
    m_progress->finish();
}

namespace internal {
namespace {

using symsrv_1_0::ISymbolFileInfo;
using symsrv_1_0::ISymSrvHelper;

QVLock g_downloadLock;
SymSrvHelperFactory g_factoryForTest = nullptr;

ObjectPtr<ISymSrvHelper> makeHelper() {
  return g_factoryForTest ? g_factoryForTest() : ISymSrvHelper::create();
}

/// A lookup's turn with the download lock.
class DownloadTurn final {
 public:
  /// Takes the lock if it is free.
  DownloadTurn() QV_NO_THREAD_SAFETY_ANALYSIS : m_isTaken(g_downloadLock.tryLock()) {}
  ~DownloadTurn() QV_NO_THREAD_SAFETY_ANALYSIS {
    if (m_isTaken)
      g_downloadLock.unlock();
  }

  DownloadTurn(const DownloadTurn&) = delete;
  DownloadTurn& operator=(const DownloadTurn&) = delete;

  bool isTaken() const { return m_isTaken; }
  void wait() QV_NO_THREAD_SAFETY_ANALYSIS {
    g_downloadLock.lock();
    m_isTaken = true;
  }

 private:
  bool m_isTaken;
};

/// Tells a watcher, when there are servers and somebody listens, why none of them is asked.
void tellNoneAsked(symsrv_1_0::IStoreWatcher* watcher,
                   const std::vector<std::wstring>& elements,
                   const wchar_t* reason) {
  const auto isServer = [](const std::wstring& e) { return isSymbolServerElement(e.c_str()); };
  if (watcher && std::ranges::any_of(elements, isServer))
    watcher->onStore({L"", L"", L"", symsrv_1_0::StoreOutcome::kLeftAlone, reason, 0});
}

}  // namespace

void setSymSrvHelperFactoryForTest(SymSrvHelperFactory factory) {
  g_factoryForTest = factory;
}

/// Returns true when at least one server is registered.
bool SymbolDownload::registerServers(const std::vector<std::wstring>& elements) {
  if (m_helper)
    m_helper->clearServers();
  bool hasServer = false;
  for (const std::wstring& element : elements) {
    if (!isSymbolServerElement(element.c_str()))
      continue;
    if (!m_helper) {
      m_helper = makeHelper();
      m_knownHelper = m_helper.get();
    }
    if (!m_helper)
      return false;
    m_helper->addServer(element.c_str());
    hasServer = true;
  }
  return hasServer;
}

/// Returns true when no download is needed. Without servers there is nothing to wait for either:
/// the list of the running download is forgotten when the next one begins.
bool SymbolDownload::isAnsweredNear(const wchar_t* binaryFile,
                                    const std::vector<std::wstring>& elements,
                                    symsrv_1_0::IStoreWatcher* watcher,
                                    std::wstring& path) const {
  std::vector<const wchar_t*> servers;
  for (const std::wstring& element : elements)
    if (isSymbolServerElement(element.c_str()))
      servers.push_back(element.c_str());
  if (servers.empty())
    return true;
  ISymSrvHelper* const helper = m_knownHelper;
  ObjectPtr<ISymbolFileInfo> file;
  const auto count = static_cast<std::int32_t>(servers.size());
  if (!helper || !helper->findNear(binaryFile, servers.data(), count, watcher, &file))
    return false;
  const wchar_t* found = file ? file->getPath() : nullptr;
  path = found ? found : L"";
  return true;
}

std::wstring SymbolDownload::fetch(const wchar_t* binaryFile,
                                   const std::vector<std::wstring>& elements,
                                   ISymbolDownloadProgress* progress,
                                   symsrv_1_0::IStoreWatcher* watcher) {
  if (!binaryFile || binaryFile[0] == L'\0') {
    tellNoneAsked(watcher, elements, L"the binary is not known");
    return {};
  }
  DownloadTurn turn;
  if (!turn.isTaken()) {
    std::wstring path;
    if (isAnsweredNear(binaryFile, elements, watcher, path))
      return path;
    turn.wait();
  }
  if (!registerServers(elements)) {
    tellNoneAsked(watcher, elements, L"there is no module for symbol servers");
    return {};
  }
  SymSrvDownloadProgressCallback callback(progress, watcher);
  const ObjectPtr<ISymbolFileInfo> file = m_helper->download(binaryFile, &callback);
  const wchar_t* path = file ? file->getPath() : nullptr;
  return path ? path : std::wstring();
}

std::wstring SymbolDownload::fetchFromEnvironment(const wchar_t* binaryFile,
                                                  ISymbolDownloadProgress* progress,
                                                  symsrv_1_0::IStoreWatcher* watcher) {
  return fetch(binaryFile, symbolPathElements(), progress, watcher);
}

}  // namespace internal
}  // namespace QV_2_9
