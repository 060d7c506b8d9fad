// Weak references to the caller's callback objects.
//
// Every callback object is an `EventGenerator`, every place that refers to one is a
// `CallbackHolder`. Holders register themselves with the callback; when it disconnects its handlers
// or is destroyed, each holder forgets it. One process-wide lock per callback class guards this:
// shared while a callback of the class runs, exclusive while one is attached, detached or
// destroyed.
//
// Holders are emptied when the `EventGenerator` base is destroyed, after the destructor of the
// derived class. A callback that another thread may be calling must call `disconnectHandlers`
// first.

#pragma once

#include "quiver/atomic_pointer.h"
#include "quiver/export.h"
#include "quiver/locks.h"
#include "quiver/object.h"

namespace QV_2_9 {

class EventGenerator;

/// Hears about the end of a callback object.
///
/// Implemented by: `CallbackHolder`; a caller may bring its own.
/// Lifetime: the implementer's own; it must be removed before it dies.
/// Threads: called on the thread that destroys or disconnects the callback, under its class lock.
/// Failure: none.
class IEventHandler {
 public:
  /// `generator` is null: the callback is going away or has dropped this handler.
  virtual void onGeneratorChanged(EventGenerator* generator) = 0;  // 0

 protected:
  ~IEventHandler() = default;
};

/// The handler list behind an `EventGenerator`.
///
/// Implemented by: the library.
/// Lifetime: counted; the generator holds the only reference.
/// Threads: any; takes the callback class's lock exclusively.
/// Failure: none; removing a handler that is not registered does nothing.
class IEventGeneratorImpl : public IQVObject {
 public:
  virtual void addHandler(IEventHandler* handler) = 0;         // 4
  virtual void removeHandler(IEventHandler* handler) = 0;      // 5
  virtual void disconnectHandlers() = 0;                       // 6
  virtual void notifyHandlers(EventGenerator* generator) = 0;  // 7

 private:
  friend class EventGenerator;
  QV_API static ObjectPtr<IEventGeneratorImpl> create(EventGenerator* owner);
};

/// Base of every callback object.
///
/// Implemented by: the library; concrete callbacks derive through the interfaces of
///                 search_callbacks.h.
/// Lifetime: the caller's own.
/// Threads: any; the operations wait until no callback of the class is running.
/// Failure: none.
class QV_API EventGenerator {
 public:
  virtual ~EventGenerator();  // 0
  /// Returns the lock of the callback class, the same for every object of the class. Null for a
  /// class whose objects are used by one thread at a time.
  virtual ISpinSharedLock* getLock() = 0;  // 1

  /// Registers `handler`; a handler added twice is told twice.
  void addHandler(IEventHandler* handler);
  /// Takes one registration of `handler` out, the oldest.
  void removeHandler(IEventHandler* handler);
  /// Empties every holder of this callback; afterwards nobody calls it any more.
  void disconnectHandlers();

  EventGenerator(const EventGenerator&) = delete;
  EventGenerator& operator=(const EventGenerator&) = delete;

 protected:
  EventGenerator() : m_impl(IEventGeneratorImpl::create(this)) {}

 private:
  ObjectPtr<IEventGeneratorImpl> m_impl;
};

/// Refers to a callback of type T without keeping it alive; empty once the callback is gone.
///
/// Its address is registered with the callback: it must stay where it is. Copying registers the
/// copy, which takes the class lock exclusively, so never copy one inside a callback of the class.
template <class T>
class CallbackHolder final : public IEventHandler {
 public:
  CallbackHolder() = default;
  /// Attaches to `callback`; null makes an empty holder.
  CallbackHolder(T* callback) { hold(callback); }
  CallbackHolder(const CallbackHolder& other) { hold(other.getCallback()); }
  /// Leaves the callback held and joins the other's, as the last handler, also when both are one.
  /// An exception leaves everything as it was.
  CallbackHolder& operator=(const CallbackHolder& other) {
    hold(other.getCallback());
    return *this;
  }
  ~CallbackHolder() { letGo(); }

  void onGeneratorChanged(EventGenerator* generator) override {
    if (!generator)
      m_callback.store(nullptr);
  }

  /// Returns the callback, null when there is none. Call it only with the lock held in shared mode,
  /// after reading this again under the lock.
  T* getCallback() const { return m_callback.load(); }
  /// Returns the callback's class lock, null for a holder that never had a callback. It stays when
  /// the callback goes.
  ISpinSharedLock* getLock() const { return m_lock.load(); }

 private:
  void hold(T* callback) {
    ISpinSharedLock* lock = callback ? callback->getLock() : nullptr;
    // Nobody may disconnect the callback before it is stored here.
    const LockGuard guard(lock);
    // What may fail comes first. The one held before can tell of its end until it is let go.
    if (callback)
      callback->addHandler(this);
    letGo();
    m_callback.store(callback);
    m_lock.store(lock);
  }
  void letGo() {
    if (!m_callback.load())
      return;
    // Another thread may be disconnecting the callback, and destroy it then: look again inside.
    const LockGuard guard(m_lock.load());
    if (T* callback = m_callback.load())
      callback->removeHandler(this);
  }

  internal::AtomicPointer<T> m_callback;
  internal::AtomicPointer<ISpinSharedLock> m_lock;
};

}  // namespace QV_2_9
