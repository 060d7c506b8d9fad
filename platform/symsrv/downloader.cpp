// What the searches share.

#include "symsrv/downloader.h"

#include "symsrv/chain_search.h"
#include "symsrv/sweep.h"

namespace symsrv_1_0::internal {
namespace {

std::string keyOf(const SoughtFile& sought) {
  std::string key;
  const Place& place = sought.places.front();
  for (const std::string& name : place.components(false, place.file)) key += "/" + name;
  return key;
}

}  // namespace

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

void Downloader::sweepOnce(const std::string& store) {
  {
    const std::lock_guard guard(m_lock);
    if (!m_swept.insert(store).second)
      return;
  }
  sweepTemporaries(store, m_settings.staleTemporary);
  m_misses.sweep(store);
}

std::string Downloader::obtain(const std::vector<Chain>& chains,
                               const SoughtFile& sought,
                               Progress& progress) {
  const KeyGate::Hold hold(m_gate, keyOf(sought));
  for (const Chain& chain : chains) {
    if (progress.isCanceled())
      return {};
    std::string path = ChainSearch(*this, chains, chain, sought, progress).run();
    if (!path.empty())
      return path;
  }
  return {};
}

}  // namespace symsrv_1_0::internal
