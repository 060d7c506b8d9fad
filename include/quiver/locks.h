// The two lock interfaces of the library and the guards that hold them.
//
// A guard over a null pointer does nothing: an optional lock needs no test where it is used. Guards
// keep their own copy of the pointer, so the object that named the lock may die before the guard.

#pragma once

#include "quiver/thread_annotations.h"

namespace QV_2_9 {

/// A re-entrant mutual-exclusion lock.
///
/// Implemented by: the library.
/// Lifetime: process-wide, or that of the object it is embedded in.
/// Threads: any; the owner may lock again and must unlock as often.
/// Failure: none; misuse blocks.
class QV_CAPABILITY("lock") ILock {
 public:
  virtual void lock() QV_ACQUIRE() = 0;    // 0
  virtual void unlock() QV_RELEASE() = 0;  // 1

 protected:
  ~ILock() = default;
};

/// A lock with an exclusive and a shared mode; waiting polls every 10 milliseconds.
///
/// Each mode is re-entrant. A thread that holds one mode and asks for the other waits for ever.
///
/// Implemented by: the library.
/// Lifetime: process-wide, one per callback class.
/// Threads: any.
/// Failure: none; misuse blocks.
class QV_CAPABILITY("shared lock") ISpinSharedLock : public ILock {
 public:
  virtual void lockShared() QV_ACQUIRE_SHARED() = 0;    // 2
  virtual void unlockShared() QV_RELEASE_SHARED() = 0;  // 3

 protected:
  ~ISpinSharedLock() = default;
};

/// Holds a lock exclusively from construction to destruction. `lock` may be null.
class QV_SCOPED_CAPABILITY LockGuard final {
 public:
  explicit LockGuard(ILock* lock) QV_ACQUIRE(lock) : m_lock(lock) {
    if (m_lock)
      m_lock->lock();
  }
  ~LockGuard() QV_RELEASE() {
    if (m_lock)
      m_lock->unlock();
  }

  LockGuard(const LockGuard&) = delete;
  LockGuard& operator=(const LockGuard&) = delete;

 private:
  ILock* m_lock;
};

/// Holds a lock in shared mode from construction to destruction. `lock` may be null.
class QV_SCOPED_CAPABILITY SharedLockGuard final {
 public:
  explicit SharedLockGuard(ISpinSharedLock* lock) QV_ACQUIRE_SHARED(lock) : m_lock(lock) {
    if (m_lock)
      m_lock->lockShared();
  }
  ~SharedLockGuard() QV_RELEASE_GENERIC() {
    if (m_lock)
      m_lock->unlockShared();
  }

  SharedLockGuard(const SharedLockGuard&) = delete;
  SharedLockGuard& operator=(const SharedLockGuard&) = delete;

 private:
  ISpinSharedLock* m_lock;
};

}  // namespace QV_2_9
