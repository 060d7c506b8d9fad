// The base of every callback object: forwards to its handler list.

#include "quiver/event_generator.h"

namespace QV_2_9 {

EventGenerator::~EventGenerator() = default;

void EventGenerator::addHandler(IEventHandler* handler) {
  m_impl->addHandler(handler);
}

void EventGenerator::removeHandler(IEventHandler* handler) {
  m_impl->removeHandler(handler);
}

void EventGenerator::disconnectHandlers() {
  m_impl->disconnectHandlers();
}

}  // namespace QV_2_9
