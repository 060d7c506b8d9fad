// The object model: what every object that the library hands out begins with, and the pointer that
// keeps such objects alive.
//
// Objects are born in static `create` factories, shared through `ObjectPtr` and destroyed by the
// last release. Callers never use new or delete on them. Counts are plain integers: references to
// one object are taken and dropped under the caller's own locking, except for file searches,
// directory lists, sets of path mappings and the message manager, which guard their counts
// themselves.

#pragma once

#include <stdint.h>

namespace QV_2_9 {

/// Root of every reference-counted interface.
///
/// Implemented by: the library; by the caller for message objects (see `RefCountImpl`).
/// Lifetime: counted.
/// Threads: see above.
/// Failure: none; releasing a reference that was never taken wraps the count and destroys nothing.
class IQVObject {
 public:
  /// Returns the object-model version the object was built with, 1 for this library.
  virtual int32_t getVersion() = 0;  // 0
  /// Takes one more reference. Returns the new count.
  virtual uint32_t addRef() = 0;  // 1
  /// Drops one reference and destroys the object with the last. Returns the new count.
  virtual uint32_t release() = 0;  // 2
  virtual ~IQVObject() = default;  // 3
};

/// Holds one reference to a T, or nothing. Calling through an empty pointer is not checked.
///
/// Values cross module boundaries: the virtual destructor is part of the layout.
template <class T>
class ObjectPtr {
 public:
  ObjectPtr() = default;
  /// Takes a reference of its own; null makes an empty pointer.
  ObjectPtr(T* object) : m_object(object) { acquire(); }
  ObjectPtr(const ObjectPtr& other) : m_object(other.m_object) { acquire(); }
  /// Converts to a base interface by taking a new reference on the same object.
  template <class U>
  ObjectPtr(const ObjectPtr<U>& other) : m_object(other.get()) {
    acquire();
  }
  virtual ~ObjectPtr() { drop(); }

  ObjectPtr& operator=(const ObjectPtr& other) {
    // The old object may own `other`, and its destructor may look at this pointer: read the new
    // object first, then let go of the old one with this pointer already empty.
    T* next = other.m_object;
    if (next == m_object)
      return *this;
    drop();
    m_object = next;
    acquire();
    return *this;
  }

  T* get() const { return m_object; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }
  explicit operator bool() const { return m_object != nullptr; }

 private:
  void acquire() {
    if (m_object)
      m_object->addRef();
  }
  void drop() {
    T* old = m_object;
    m_object = nullptr;
    if (old)
      old->release();
  }

  T* m_object = nullptr;
};

}  // namespace QV_2_9
