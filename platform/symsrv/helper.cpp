// From the interface's texts to the module's own, and back.

#include "symsrv/helper.h"

#include "paku/no_dialogs.h"
#include "paku/text_encoding.h"
#include "symsrv/held_reports.h"
#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

bool toUtf8(const wchar_t* text, std::string& bytes) {
  return text && PAKU_3_1::encode(text, bytes);
}

void say(const Report& report, const std::string& line) {
  if (report)
    report(printable(line));
}

void tellOfNoStore(IDownloadProgressCallback* callback, const std::string& reason) {
  IStoreWatcher* const watcher = callback ? callback->storeWatcher() : nullptr;
  if (!watcher)
    return;
  const std::wstring text = PAKU_3_1::decode(printable(reason));
  watcher->onStore({L"", L"", L"", StoreOutcome::kLeftAlone, text.c_str(), 0});
}

/// Returns what the binary asks for. Nothing after saying why it asks for nothing.
std::optional<SoughtFile> soughtBy(const wchar_t* binaryFile,
                                   const Settings& settings,
                                   const Report& report,
                                   IDownloadProgressCallback* callback) {
  std::string name;
  const std::unique_ptr<FileSource> binary =
      toUtf8(binaryFile, name) ? FileSource::open(name) : nullptr;
  SoughtResult sought =
      binary ? soughtFileOf(*binary, name) : SoughtResult{std::nullopt, "cannot be read"};
  if (!sought.file) {
    say(report, name + ": " + sought.reason);
    tellOfNoStore(callback, name + ": " + sought.reason);
  }
  if (sought.file && settings.looksInLowerCase)
    alsoInLowerCase(*sought.file);
  return std::move(sought.file);
}

}  // namespace

SymSrvHelper::SymSrvHelper(Settings settings, std::unique_ptr<ITransport> transport, Report report)
    : m_report(report),
      m_downloader(std::move(settings), std::move(transport), std::move(report)) {}

void SymSrvHelper::addServer(const wchar_t* element) {
  std::string text;
  if (!toUtf8(element, text))
    return;
  const std::lock_guard guard(m_lock);
  const std::string refusal = m_servers.add(text, m_downloader.settings().defaultStore);
  if (refusal.empty())
    return;
  m_refusals.push_back(refusal);
  say(m_report, refusal);
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

QV_2_9::ObjectPtr<ISymbolFileInfo> SymSrvHelper::download(const wchar_t* binaryFile,
                                                          IDownloadProgressCallback* callback) {
  const PAKU_3_1::NoDialogs noDialogs;
  // As they are now: whoever hears of a store may register others.
  const std::vector<Chain> servers = chains();
  const std::vector<std::string> unusable = refusals();
  const std::optional<SoughtFile> sought =
      soughtBy(binaryFile, m_downloader.settings(), m_report, callback);
  if (!sought)
    return nullptr;
  for (const std::string& refusal : unusable) tellOfNoStore(callback, refusal);
  Progress progress(callback);
  const std::string path = m_downloader.obtain(servers, *sought, progress);
  progress.finish();
  if (path.empty())
    return nullptr;
  return new SymbolFileInfo(PAKU_3_1::decode(path));
}

bool SymSrvHelper::findNear(const wchar_t* binaryFile,
                            const wchar_t* const* elements,
                            std::int32_t count,
                            IStoreWatcher* watcher,
                            QV_2_9::ObjectPtr<ISymbolFileInfo>* file) {
  const PAKU_3_1::NoDialogs noDialogs;
  HeldReports held(m_report, watcher);
  ChainList servers;
  std::vector<std::string> unusable;
  for (std::int32_t i = 0; i < count; ++i) {
    std::string text;
    if (!toUtf8(elements[i], text))
      continue;
    std::string refusal = servers.add(text, m_downloader.settings().defaultStore);
    if (refusal.empty())
      continue;
    say(held.lines(), refusal);
    unusable.push_back(std::move(refusal));
  }
  std::optional<std::string> path = std::string();
  if (const std::optional<SoughtFile> sought =
          soughtBy(binaryFile, m_downloader.settings(), held.lines(), &held)) {
    for (const std::string& refusal : unusable) tellOfNoStore(&held, refusal);
    Progress progress(&held);
    path = m_downloader.obtainNear(servers.chains(), *sought, progress, held.lines());
  }
  if (!path)
    return false;
  held.release();
  *file = path->empty() ? nullptr : new SymbolFileInfo(PAKU_3_1::decode(*path));
  return true;
}

}  // namespace symsrv_1_0::internal
