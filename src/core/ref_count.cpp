// The exported reference counter.

#include "quiver/ref_count.h"

namespace QV_2_9 {
namespace internal {

uint32_t RefCountHelper::addRef() {
  const LockGuard guard(m_lock);
  return ++m_count;
}

uint32_t RefCountHelper::release() {
  const LockGuard guard(m_lock);
  if (--m_count != 0)
    return m_count;
  if (m_observer)
    m_observer->onDelete();  // This counter is gone now; the guard has the lock's address itself.
  return 0;
}

}  // namespace internal
}  // namespace QV_2_9
