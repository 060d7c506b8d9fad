// Reference counting for classes that implement a counted interface.
//
//   class MyMessage final : public RefCountImpl<IFileIsDirectoryMessage> { ... };
//   ObjectPtr<IFileIsDirectoryMessage> message(new MyMessage);

#pragma once

#include <stdint.h>

#include "quiver/export.h"
#include "quiver/locks.h"
#include "quiver/object.h"

namespace QV_2_9 {
namespace internal {

/// Told when a count reaches zero. Lets the exported counter destroy an object of any class.
///
/// Implemented by: `RefCountImpl`.
/// Lifetime: that of the counted object.
/// Threads: the thread that dropped the last reference.
/// Failure: none.
class IDeleteObserver {
 public:
  virtual void onDelete() = 0;  // 0

 protected:
  ~IDeleteObserver() = default;
};

/// A reference count, starting at 0. With a lock, every change happens inside it, the destruction
/// of the counted object included.
class RefCountHelper final {
 public:
  /// Neither pointer is owned; both may be null. The lock must outlive the counted object.
  RefCountHelper(IDeleteObserver* observer, ILock* lock) : m_observer(observer), m_lock(lock) {}

  RefCountHelper(const RefCountHelper&) = delete;
  RefCountHelper& operator=(const RefCountHelper&) = delete;

  /// Returns the new count.
  QV_API uint32_t addRef();
  /// Tells the observer when the count becomes zero. Returns the new count; at 0 it wraps to
  /// 4294967295 and tells nobody.
  QV_API uint32_t release();

 private:
  uint32_t m_count = 0;
  IDeleteObserver* m_observer;
  ILock* m_lock;
};

}  // namespace internal

/// Implements the object-model operations of T, an interface derived from `IQVObject`. The object
/// must be allocated with new; it is deleted with the last reference.
template <class T>
class RefCountImpl : public T, public internal::IDeleteObserver {
 public:
  RefCountImpl(const RefCountImpl&) = delete;
  RefCountImpl& operator=(const RefCountImpl&) = delete;

  int32_t getVersion() override { return m_version; }
  uint32_t addRef() override { return m_counter.addRef(); }
  uint32_t release() override { return m_counter.release(); }
  void onDelete() override { delete this; }

 protected:
  /// `counterLock` guards the count of classes whose objects are shared between threads. It belongs
  /// to the class, never to an object.
  explicit RefCountImpl(ILock* counterLock = nullptr) : m_counter(this, counterLock) {}
  ~RefCountImpl() override = default;

 private:
  int32_t m_version = 1;
  internal::RefCountHelper m_counter;
};

}  // namespace QV_2_9
