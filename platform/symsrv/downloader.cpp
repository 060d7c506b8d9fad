// What the searches share.

#include "symsrv/downloader.h"

#include "symsrv/chain_search.h"
#include "symsrv/sweep.h"

namespace symsrv_1_0::internal {

Downloader::Downloader(Settings settings, std::unique_ptr<ITransport> transport, Report report)
    : m_settings(std::move(settings)),
      m_transport(std::move(transport)),
      m_report(std::move(report)),
      m_misses(m_settings.missExpiry) {}

std::optional<bool> Downloader::tiersOf(const std::string& address) const {
  const std::lock_guard guard(m_lock);
  const auto found = m_tiers.find(address);
  return found == m_tiers.end() ? std::nullopt : std::optional(found->second);
}

void Downloader::rememberTiers(const std::string& address, bool hasTwoTiers) {
  const std::lock_guard guard(m_lock);
  m_tiers[address] = hasTwoTiers;
}

void Downloader::sweepOnce(const DirectoryStore& store) {
  {
    const std::lock_guard guard(m_lock);
    if (!m_swept.insert(store.root()).second)
      return;
  }
  sweepTemporaries(store, m_settings.staleTemporary);
  m_misses.sweep(store);
}

bool Downloader::isFirstQuestion(const std::string& origin) {
  const std::lock_guard guard(m_lock);
  return m_asked.insert(origin).second;
}

std::string Downloader::obtain(const std::vector<Chain>& chains,
                               const SoughtFile& sought,
                               Progress& progress) {
  const SearchRequest request{chains, sought, progress, m_report, false};
  for (const Chain& chain : chains) {
    if (progress.isCanceled())
      return {};
    std::string path = ChainSearch(*this, request, chain).run();
    if (!path.empty())
      return path;
  }
  return {};
}

std::optional<std::string> Downloader::obtainNear(const std::vector<Chain>& chains,
                                                  const SoughtFile& sought,
                                                  Progress& progress,
                                                  const Report& report) {
  const SearchRequest request{chains, sought, progress, report, true};
  for (const Chain& chain : chains) {
    ChainSearch search(*this, request, chain);
    std::string path = search.run();
    if (search.isUndecided())
      return std::nullopt;
    if (!path.empty())
      return path;
  }
  return std::string();
}

}  // namespace symsrv_1_0::internal
