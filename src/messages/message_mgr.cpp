// The one message manager and its lock.

#include "messages/message_mgr.h"

#include "core/lock.h"

namespace QV_2_9 {
namespace {

QVLock managerLock;
MessageMgr* manager QV_GUARDED_BY(managerLock) = nullptr;

}  // namespace

// The reference is taken under the lock: nobody can end the manager in between.
ObjectPtr<IMessageMgr> MessageMgr::instance() {
  const LockGuard guard(&managerLock);
  if (!manager)
    manager = new MessageMgr(&managerLock);
  return manager;
}

// Messages that go with the manager, after this, may ask for a manager: they get a new one.
MessageMgr::~MessageMgr() {
  const LockGuard guard(&managerLock);
  manager = nullptr;
}

ObjectPtr<IMessageMgr> IMessageMgr::create() {
  return MessageMgr::instance();
}

}  // namespace QV_2_9
