// Lets lookups pass, and nobody while something changes that has no lock of its own: environments
// and registered messages are the caller's to guard.

#pragma once

#include <atomic>
#include <chrono>
#include <mutex>
#include <shared_mutex>
#include <thread>

namespace quiver_load {

/// Meets the requirements of a shared lock. Lookups keep out while a change waits: without that
/// there would always be one inside.
class Gate final {
 public:
  void lock_shared() {
    // Relaxed: waiting here orders nothing between two lookups.
    while (m_isClosing.load(std::memory_order_relaxed))
      std::this_thread::sleep_for(std::chrono::microseconds(200));
    m_lock.lock_shared();
  }
  void unlock_shared() { m_lock.unlock_shared(); }

  void lock() {
    m_turn.lock();
    m_isClosing.store(true, std::memory_order_relaxed);
    m_lock.lock();
  }
  void unlock() {
    m_isClosing.store(false, std::memory_order_relaxed);
    m_lock.unlock();
    m_turn.unlock();
  }

 private:
  std::mutex m_turn;  // of those who change
  std::shared_mutex m_lock;
  std::atomic<bool> m_isClosing = false;
};

}  // namespace quiver_load
