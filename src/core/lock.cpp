// The shared/exclusive lock. The plain lock is in the file of each system.

#include "core/lock.h"

#include "core/lock_system.h"

namespace QV_2_9 {

bool QVSpinSharedLock::tryLock() {
  if (m_count.load() > 0)
    return false;
  const LockGuard guard(&m_counterLock);
  if (m_count.load() > 0)
    return false;
  --m_count;
  return true;
}

bool QVSpinSharedLock::tryLockShared() {
  if (m_count.load() < 0)
    return false;
  const LockGuard guard(&m_counterLock);
  if (m_count.load() < 0)
    return false;
  ++m_count;
  return true;
}

// The four operations make one lock out of others, which is more than the analysis can follow.

void QVSpinSharedLock::lock() QV_NO_THREAD_SAFETY_ANALYSIS {
  while (!tryLock()) internal::sleepBetweenAttempts();
  // Not under the counter's lock: the owner needs that one to let go.
  m_writerLock.lock();
}

void QVSpinSharedLock::unlock() QV_NO_THREAD_SAFETY_ANALYSIS {
  m_writerLock.unlock();
  const LockGuard guard(&m_counterLock);
  ++m_count;
}

void QVSpinSharedLock::lockShared() QV_NO_THREAD_SAFETY_ANALYSIS {
  while (!tryLockShared()) internal::sleepBetweenAttempts();
}

void QVSpinSharedLock::unlockShared() QV_NO_THREAD_SAFETY_ANALYSIS {
  const LockGuard guard(&m_counterLock);
  --m_count;
}

}  // namespace QV_2_9
