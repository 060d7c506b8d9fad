// A pointer that one thread may clear while another reads it. Stands in for the standard atomic in
// headers that include no standard library.

#pragma once

namespace QV_2_9 {
namespace internal {

template <class T>
class AtomicPointer final {
 public:
#if defined(__GNUC__) || defined(__clang__)
  T* load() const {
    return __atomic_load_n(&m_value, __ATOMIC_ACQUIRE);
  }
  void store(T* value) {
    __atomic_store_n(&m_value, value, __ATOMIC_RELEASE);
  }

 private:
  T* m_value = nullptr;
#else
  // This compiler gives volatile accesses acquire and release order on x86.
  T* load() const {
    return m_value;
  }
  void store(T* value) {
    m_value = value;
  }

 private:
  T* volatile m_value = nullptr;
#endif
};

}  // namespace internal
}  // namespace QV_2_9
