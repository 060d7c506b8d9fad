// The handlers of one callback object.
//
// They are guarded by the lock of the callback's class, held exclusively. The lock is asked for
// when the first handler comes, because a callback cannot name it while its base is built or
// destroyed; until then there is nothing to guard. A callback that names no lock is used by one
// thread at a time.

#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

#include "quiver/atomic_pointer.h"
#include "quiver/event_generator.h"
#include "quiver/ref_count.h"

namespace QV_2_9 {

class EventGeneratorImpl final : public RefCountImpl<IEventGeneratorImpl> {
 public:
  explicit EventGeneratorImpl(EventGenerator* owner) : m_owner(owner) {}

  void addHandler(IEventHandler* handler) override;
  void removeHandler(IEventHandler* handler) override;
  void disconnectHandlers() override;
  /// Takes no lock; the caller holds it.
  void notifyHandlers(EventGenerator* generator) QV_REQUIRES(lock()) override;

 private:
  ~EventGeneratorImpl() override;

  ISpinSharedLock* lock() const { return m_lock.load(); }

  // Handlers are told to let go, then forgotten.
  void dropHandlers();

  std::vector<IEventHandler*> m_handlers QV_GUARDED_BY(lock());
  std::size_t m_nextToNotify QV_GUARDED_BY(lock()) = 0;  // stands behind the handler being notified
  EventGenerator* m_owner;                               // not to be touched in the destructor
  internal::AtomicPointer<ISpinSharedLock> m_lock;
  std::atomic<bool> m_hasHandlerCome{false};  // true only once the lock is known
};

}  // namespace QV_2_9
