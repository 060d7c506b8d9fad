// The plain lock over a critical section.

#include <windows.h>
#include <new>

#include "core/lock.h"
#include "core/lock_system.h"

namespace QV_2_9 {
namespace {

CRITICAL_SECTION* sectionIn(unsigned char* storage) {
  return std::launder(reinterpret_cast<CRITICAL_SECTION*>(storage));
}

}  // namespace

QVLock::QVLock() {
  static_assert(sizeof(CRITICAL_SECTION) <= sizeof(m_storage));
  static_assert(alignof(CRITICAL_SECTION) <= alignof(void*));
  InitializeCriticalSection(new (m_storage) CRITICAL_SECTION);
}

QVLock::~QVLock() {
  DeleteCriticalSection(sectionIn(m_storage));
}

void QVLock::lock() QV_NO_THREAD_SAFETY_ANALYSIS {
  EnterCriticalSection(sectionIn(m_storage));
}

bool QVLock::tryLock() QV_NO_THREAD_SAFETY_ANALYSIS {
  return TryEnterCriticalSection(sectionIn(m_storage)) != FALSE;
}

void QVLock::unlock() QV_NO_THREAD_SAFETY_ANALYSIS {
  LeaveCriticalSection(sectionIn(m_storage));
}

namespace internal {

void sleepBetweenAttempts() {
  Sleep(10);
}

}  // namespace internal
}  // namespace QV_2_9
