// What is remembered between downloads: servers that failed, files that are not there, and which
// keys are being worked on.

#pragma once

#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace symsrv_1_0::internal {

/// Servers that failed are left alone for the rest of the process. Threads: any.
class ServerMemory final {
 public:
  void setAside(const std::string& origin, const std::string& reason);
  /// Returns the reason. Empty when the server is not set aside.
  std::string reasonAgainst(const std::string& origin) const;

 private:
  mutable std::mutex m_lock;
  std::map<std::string, std::string> m_reasons;  // guarded by m_lock
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

  /// Takes an address without secrets; `store` is empty when nothing can be kept on disk.
  void remember(const std::string& address, const std::string& store);
  bool isMissing(const std::string& address, const std::string& store);

  /// Removes what has expired on disk.
  void sweep(const std::string& store) const;

 private:
  using Clock = std::chrono::steady_clock;

  std::chrono::seconds m_expiry;
  std::mutex m_lock;
  std::map<std::string, Clock::time_point> m_until;  // guarded by m_lock
};

/// Lets one thread at a time work on a key.
class KeyGate final {
 public:
  /// Holds a key from construction to destruction; waits for whoever holds it.
  class Hold final {
   public:
    Hold(KeyGate& gate, std::string key);
    ~Hold();

    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    KeyGate& m_gate;
    std::string m_key;
  };

 private:
  std::mutex m_lock;
  std::condition_variable m_freed;
  std::set<std::string> m_held;  // guarded by m_lock
};

}  // namespace symsrv_1_0::internal
