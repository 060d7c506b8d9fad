// The plain lock over the standard library's recursive mutex.

#include <chrono>
#include <memory>
#include <mutex>
#include <new>
#include <thread>

#include "core/lock.h"
#include "core/lock_system.h"

namespace QV_2_9 {
namespace {

std::recursive_mutex& mutexIn(unsigned char* storage) {
  return *std::launder(reinterpret_cast<std::recursive_mutex*>(storage));
}

}  // namespace

QVLock::QVLock() {
  static_assert(sizeof(std::recursive_mutex) <= sizeof(m_storage));
  static_assert(alignof(std::recursive_mutex) <= alignof(void*));
  new (m_storage) std::recursive_mutex;
}

QVLock::~QVLock() {
  std::destroy_at(&mutexIn(m_storage));
}

void QVLock::lock() QV_NO_THREAD_SAFETY_ANALYSIS {
  mutexIn(m_storage).lock();
}

bool QVLock::tryLock() QV_NO_THREAD_SAFETY_ANALYSIS {
  return mutexIn(m_storage).try_lock();
}

void QVLock::unlock() QV_NO_THREAD_SAFETY_ANALYSIS {
  mutexIn(m_storage).unlock();
}

namespace internal {

void sleepBetweenAttempts() {
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

}  // namespace internal
}  // namespace QV_2_9
