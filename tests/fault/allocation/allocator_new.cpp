// Stands in for operator new and delete; the allocator of the C library is the sanitizer's.

#include <cstdlib>
#include <new>

#include "fault/allocation/failing_allocations.h"

namespace {

void* allocate(std::size_t size) noexcept {
  if (quiver_test::refusesNow())
    return nullptr;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory)
    quiver_test::countAllocation();
  return memory;
}

void* allocateOrThrow(std::size_t size) {
  void* const memory = allocate(size);
  if (!memory)
    throw std::bad_alloc();
  return memory;
}

void release(void* memory) noexcept {
  if (memory)
    quiver_test::countRelease();
  std::free(memory);
}

}  // namespace

// Those with an alignment stay the sanitizer's: nothing here asks for more than the usual one.
// NOLINTBEGIN(misc-definitions-in-headers)
void* operator new(std::size_t size) {
  return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  release(memory);
}
void operator delete[](void* memory) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  release(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  release(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  release(memory);
}
// NOLINTEND(misc-definitions-in-headers)

namespace quiver_test {

const char* reasonAgainstFaults() {
  return nullptr;
}

}  // namespace quiver_test
