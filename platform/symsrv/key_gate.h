// One request per key at a time.

#pragma once

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace symsrv_1_0::internal {

/// Lets one thread at a time work on a key.
class KeyGate final {
 public:
  /// Holds a key until it is destroyed, when it got it.
  class Hold final {
   public:
    /// Waits for whoever holds the key, calling `goOn` every so often; false from it ends the wait.
    /// A thread that holds another key already does not wait: it might be waited for itself.
    Hold(KeyGate& gate, std::string key, const std::function<bool()>& goOn);
    ~Hold();

    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    bool isTaken() const { return m_isTaken; }
    /// Returns true when another thread had the key before: what it sought may be there now.
    bool hasWaited() const { return m_hasWaited; }

   private:
    KeyGate& m_gate;
    std::string m_key;
    bool m_isTaken = false;
    bool m_hasWaited = false;
  };

 private:
  bool isHolder(std::thread::id thread) const;

  std::mutex m_lock;
  std::condition_variable m_freed;
  std::map<std::string, std::thread::id> m_holders;  // guarded by m_lock
};

}  // namespace symsrv_1_0::internal
