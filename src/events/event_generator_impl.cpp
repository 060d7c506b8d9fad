// The handlers of one callback object.

#include "events/event_generator_impl.h"

#include <algorithm>

namespace QV_2_9 {

ObjectPtr<IEventGeneratorImpl> IEventGeneratorImpl::create(EventGenerator* owner) {
  return new EventGeneratorImpl(owner);
}

EventGeneratorImpl::~EventGeneratorImpl() {
  dropHandlers();
}

void EventGeneratorImpl::addHandler(IEventHandler* handler) {
  if (!lock())
    m_lock.store(m_owner->getLock());
  m_hasHandlerCome = true;
  const LockGuard guard(lock());
  m_handlers.push_back(handler);
}

// Before the first handler has come there is nothing to do; it may be coming on another thread just
// now.

void EventGeneratorImpl::removeHandler(IEventHandler* handler) {
  if (!m_hasHandlerCome)
    return;
  const LockGuard guard(lock());
  const auto found = std::find(m_handlers.begin(), m_handlers.end(), handler);
  if (found == m_handlers.end())
    return;
  // A handler may take itself out while it is being notified: nobody must be passed over.
  if (static_cast<std::size_t>(found - m_handlers.begin()) < m_nextToNotify)
    --m_nextToNotify;
  m_handlers.erase(found);
}

void EventGeneratorImpl::disconnectHandlers() {
  dropHandlers();
}

void EventGeneratorImpl::notifyHandlers(EventGenerator* generator) {
  for (m_nextToNotify = 0; m_nextToNotify < m_handlers.size();) {
    IEventHandler* handler = m_handlers[m_nextToNotify++];
    if (handler)
      handler->onGeneratorChanged(generator);
  }
  m_nextToNotify = 0;
}

void EventGeneratorImpl::dropHandlers() {
  if (!m_hasHandlerCome)
    return;
  const LockGuard guard(lock());
  EventGeneratorImpl::notifyHandlers(nullptr);
  m_handlers.clear();
}

}  // namespace QV_2_9
