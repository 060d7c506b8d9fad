// A callback taken out of its holder for the time of a call.

#pragma once

#include "quiver/event_generator.h"

namespace QV_2_9 {

/// Holds the callback class's lock in shared mode from construction to `release` or destruction, so
/// that the callback cannot go. Over an empty holder it holds nothing.
///
///   LockedCallback<IFilesFoundCallback> callback(env->getFilesFoundCallback());
///   if (callback)
///     file = callback->onBinFilesFound(name, files);
template <class T>
class LockedCallback final {
 public:
  explicit LockedCallback(const CallbackHolder<T>& holder) QV_NO_THREAD_SAFETY_ANALYSIS {
    if (!holder.getCallback())
      return;
    m_lock = holder.getLock();
    if (m_lock)
      m_lock->lockShared();
    // The callback may have gone while the lock was waited for.
    m_callback = holder.getCallback();
  }
  ~LockedCallback() { release(); }

  LockedCallback(const LockedCallback&) = delete;
  LockedCallback& operator=(const LockedCallback&) = delete;

  /// Returns the callback, null when there is none or after `release`.
  T* get() const { return m_callback; }
  T* operator->() const { return m_callback; }
  explicit operator bool() const { return m_callback != nullptr; }

  /// Lets go of the lock before the end of the scope; the callback must not be used any more.
  void release() QV_NO_THREAD_SAFETY_ANALYSIS {
    m_callback = nullptr;
    ISpinSharedLock* lock = m_lock;
    m_lock = nullptr;
    if (lock)
      lock->unlockShared();
  }

 private:
  ISpinSharedLock* m_lock = nullptr;
  T* m_callback = nullptr;
};

}  // namespace QV_2_9
