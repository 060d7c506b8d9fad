// The registration of one kind of message, with the lock that the process keeps for the kind.

#pragma once

#include "core/lock.h"
#include "quiver/object.h"

namespace QV_2_9 {

/// Every kind is a type of its own and so has a lock of its own, which outlives the managers. That
/// lock is the clients': they replace messages under it, searches never take it. What a search
/// copies is guarded by another lock, which no client sees.
template <class Message>
class MessageSlot final {
 public:
  void set(const ObjectPtr<Message>& message) {
    ObjectPtr<Message> former;  // a message may do anything while it dies: it goes after the guard
    const LockGuard guard(&s_pointerLock);
    former = m_message;
    m_message = message;
  }
  ObjectPtr<Message> get() const {
    const LockGuard guard(&s_pointerLock);
    return m_message;
  }
  ILock* lock() { return &s_lock; }

 private:
  static inline QVLock s_lock;
  static inline QVLock s_pointerLock;
  ObjectPtr<Message> m_message QV_GUARDED_BY(s_pointerLock);
};

}  // namespace QV_2_9
