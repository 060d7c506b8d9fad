// What is remembered between downloads: servers that failed, and files that are not there.

#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "symsrv/directory_store.h"

namespace symsrv_1_0::internal {

/// Servers that failed are left alone for a while, or for the rest of the process. Threads: any.
class ServerMemory final {
 public:
  /// Without a time: for good.
  void setAside(const std::string& origin,
                const std::string& reason,
                std::optional<std::chrono::seconds> time);
  /// Returns the reason. Empty when the server is not set aside.
  std::string reasonAgainst(const std::string& origin) const;

 private:
  using Clock = std::chrono::steady_clock;

  struct Aside {
    std::string reason;
    Clock::time_point until;
  };

  mutable std::mutex m_lock;
  std::map<std::string, Aside> m_aside;  // guarded by m_lock
};

/// Files that a server did not have, until the memory expires. In this process, and for others in
/// the nearest store:
///
///   <store>/.misses/0123456789abcdef.miss    a line with the time, a line with the address
///
/// Threads: any.
class MissMemory final {
 public:
  explicit MissMemory(std::chrono::seconds expiry) : m_expiry(expiry) {}

  /// Takes an address without secrets; `store` is null when nothing can be kept on disk.
  void remember(const std::string& address, const DirectoryStore* store);
  bool isMissing(const std::string& address, const DirectoryStore* store);

  /// Removes what has expired on disk.
  void sweep(const DirectoryStore& store) const;

 private:
  using Clock = std::chrono::steady_clock;

  std::chrono::seconds m_expiry;
  std::mutex m_lock;
  std::map<std::string, Clock::time_point> m_until;  // guarded by m_lock
};

}  // namespace symsrv_1_0::internal
