// The lock classes behind the lock interfaces.

#pragma once

#include <atomic>
#include <cstdint>

#include "quiver/locks.h"

namespace QV_2_9 {

/// A re-entrant lock: a critical section on Windows, a recursive mutex elsewhere.
class QV_CAPABILITY("lock") QVLock final : public ILock {
 public:
  QVLock();
  ~QVLock();

  QVLock(const QVLock&) = delete;
  QVLock& operator=(const QVLock&) = delete;

  void lock() QV_ACQUIRE() override;
  void unlock() QV_RELEASE() override;

  /// Takes the lock when nobody else has it. Returns false instead of waiting.
  bool tryLock() QV_THREAD_ANNOTATION(try_acquire_capability(true));

 private:
  // The system's lock object, kept opaque so that no system header is needed here.
  alignas(void*) unsigned char m_storage[6 * sizeof(void*)];
};

/// A shared/exclusive lock made of two plain ones, a counter and a sleep loop.
///
/// It suits many short shared holds and a rare exclusive one. Exclusive claimants stack up (count
/// -1, -2, ...) and keep new shared holders out; shared holders keep claimants out.
class QV_CAPABILITY("shared lock") QVSpinSharedLock final : public ISpinSharedLock {
 public:
  QVSpinSharedLock() = default;

  QVSpinSharedLock(const QVSpinSharedLock&) = delete;
  QVSpinSharedLock& operator=(const QVSpinSharedLock&) = delete;

  void lock() QV_ACQUIRE() override;
  void unlock() QV_RELEASE() override;
  void lockShared() QV_ACQUIRE_SHARED() override;
  void unlockShared() QV_RELEASE_SHARED() override;

  /// Returns the number of shared holders, or minus the number of exclusive claimants. For tests.
  std::int32_t count() const { return m_count.load(); }

 private:
  bool tryLock();
  bool tryLockShared();

  QVLock m_counterLock;
  std::atomic<std::int32_t> m_count{0};  // written under m_counterLock, first read without it
  QVLock m_writerLock;
};

}  // namespace QV_2_9
