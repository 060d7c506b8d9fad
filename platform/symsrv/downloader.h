// Looks for a symbol file along chains of stores.
//
// Chains in order, each from its nearest store to its furthest. What is found in a directory is
// verified and, unless it lies in the nearest store already, brought there. Threads: any; each
// download has its own chains, what is shared locks itself.

#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "symsrv/chain.h"
#include "symsrv/delivery.h"
#include "symsrv/key_gate.h"
#include "symsrv/memory.h"
#include "symsrv/report.h"
#include "symsrv/settings.h"
#include "symsrv/transport.h"

namespace symsrv_1_0::internal {

/// What one search is about.
struct SearchRequest {
  const std::vector<Chain>& chains;  ///< A pointer may lead into any of their directories.
  const SoughtFile& sought;
  Progress& progress;
  const Report& report;
  bool isNearOnly;  ///< No server is asked, nothing is copied.
};

class Downloader final {
 public:
  /// Without a transport only directories are searched.
  Downloader(Settings settings, std::unique_ptr<ITransport> transport, Report report);

  const Settings& settings() const { return m_settings; }

  /// Returns the local path. Empty when there is none.
  std::string obtain(const std::vector<Chain>& chains,
                     const SoughtFile& sought,
                     Progress& progress);

  /// The same as far as it takes no server and no copy. Nothing when that does not decide it.
  std::optional<std::string> obtainNear(const std::vector<Chain>& chains,
                                        const SoughtFile& sought,
                                        Progress& progress,
                                        const Report& report);

 private:
  friend class ChainSearch;

  /// Returns whether a server's store has two tiers, once somebody asked it.
  std::optional<bool> tiersOf(const std::string& address) const;
  void rememberTiers(const std::string& address, bool hasTwoTiers);
  void sweepOnce(const DirectoryStore& store);
  /// Returns true once for each server.
  bool isFirstQuestion(const std::string& origin);

  const Settings m_settings;
  const std::unique_ptr<ITransport> m_transport;
  const Report m_report;
  ServerMemory m_servers;
  MissMemory m_misses;
  KeyGate m_gate;
  mutable std::mutex m_lock;
  std::map<std::string, bool> m_tiers;  // guarded by m_lock
  std::set<std::string> m_swept;        // guarded by m_lock
  std::set<std::string> m_asked;        // guarded by m_lock
};

}  // namespace symsrv_1_0::internal
