// The registration of one kind of message, with the lock that the process keeps for the kind.

#pragma once

#include "core/lock.h"
#include "quiver/object.h"

namespace QV_2_9 {

/// Every kind is a type of its own and so has a lock of its own, which outlives the managers. The
/// registration itself takes no lock: that is the client's part.
template <class Message>
class MessageSlot final {
 public:
  void set(const ObjectPtr<Message>& message) { m_message = message; }
  ObjectPtr<Message> get() const { return m_message; }
  ILock* lock() { return &s_lock; }

 private:
  static inline QVLock s_lock;
  ObjectPtr<Message> m_message;
};

}  // namespace QV_2_9
