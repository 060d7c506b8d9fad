// From the interface's texts to the module's own, and back.

#include "symsrv/helper.h"

#include "paku/text_encoding.h"
#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

bool toUtf8(const wchar_t* text, std::string& bytes) {
  return text && PAKU_3_1::encode(text, bytes);
}

void tellOfNoStore(IDownloadProgressCallback* callback, const std::string& reason) {
  IStoreWatcher* const watcher = callback ? callback->storeWatcher() : nullptr;
  if (!watcher)
    return;
  const std::wstring text = PAKU_3_1::decode(printable(reason));
  watcher->onStore({L"", L"", L"", StoreOutcome::kLeftAlone, text.c_str(), 0});
}

}  // namespace

SymSrvHelper::SymSrvHelper(Settings settings, std::unique_ptr<ITransport> transport, Report report)
    : m_report(report),
      m_downloader(std::move(settings), std::move(transport), std::move(report)) {}

void SymSrvHelper::say(const std::string& line) const {
  if (m_report)
    m_report(printable(line));
}

void SymSrvHelper::addServer(const wchar_t* element) {
  std::string text;
  if (!toUtf8(element, text))
    return;
  const std::lock_guard guard(m_lock);
  const std::string refusal = m_servers.add(text, m_downloader.settings().defaultStore);
  if (refusal.empty())
    return;
  m_refusals.push_back(refusal);
  say(refusal);
}

void SymSrvHelper::clearServers() {
  const std::lock_guard guard(m_lock);
  m_servers.clear();
  m_refusals.clear();
}

std::vector<Chain> SymSrvHelper::chains() const {
  const std::lock_guard guard(m_lock);
  return m_servers.chains();
}

std::vector<std::string> SymSrvHelper::refusals() const {
  const std::lock_guard guard(m_lock);
  return m_refusals;
}

void SymSrvHelper::refuse(IDownloadProgressCallback* callback, const std::string& line) const {
  say(line);
  tellOfNoStore(callback, line);
}

QV_2_9::ObjectPtr<ISymbolFileInfo> SymSrvHelper::download(const wchar_t* binaryFile,
                                                          IDownloadProgressCallback* callback) {
  // As they are now: whoever hears of a store may register others.
  const std::vector<Chain> servers = chains();
  const std::vector<std::string> unusable = refusals();
  std::string name;
  const std::unique_ptr<FileSource> binary =
      toUtf8(binaryFile, name) ? FileSource::open(name) : nullptr;
  if (!binary) {
    refuse(callback, name + ": cannot be read");
    return nullptr;
  }
  const SoughtResult sought = soughtFileOf(*binary, name);
  if (!sought.file) {
    refuse(callback, name + ": " + sought.reason);
    return nullptr;
  }
  for (const std::string& refusal : unusable) tellOfNoStore(callback, refusal);
  Progress progress(callback);
  const std::string path = m_downloader.obtain(servers, *sought.file, progress);
  progress.finish();
  if (path.empty())
    return nullptr;
  return new SymbolFileInfo(PAKU_3_1::decode(path));
}

}  // namespace symsrv_1_0::internal
