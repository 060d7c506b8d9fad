// Stands in for the allocator of the C library, which operator new and all libraries use.

#include <cerrno>
#include <cstddef>

#include "fault/allocation/failing_allocations.h"

// NOLINTBEGIN(bugprone-reserved-identifier,misc-definitions-in-headers)
extern "C" {
void* __libc_malloc(std::size_t size) noexcept;
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;
void* __libc_realloc(void* memory, std::size_t size) noexcept;
void* __libc_memalign(std::size_t alignment, std::size_t size) noexcept;
void __libc_free(void* memory) noexcept;
}

namespace {

bool isRefused() {
  if (!quiver_test::refusesNow())
    return false;
  errno = ENOMEM;
  return true;
}

void* counted(void* memory) {
  if (memory)
    quiver_test::countAllocation();
  return memory;
}

}  // namespace

// Seen by the libraries of the process, whatever is hidden elsewhere.
#pragma GCC visibility push(default)

extern "C" {

void* malloc(std::size_t size) noexcept {
  return isRefused() ? nullptr : counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept {
  return isRefused() ? nullptr : counted(__libc_calloc(count, size));
}

void* realloc(void* memory, std::size_t size) noexcept {
  if (isRefused())
    return nullptr;
  if (!memory)
    return counted(__libc_malloc(size));
  if (size == 0)
    quiver_test::countRelease();
  return __libc_realloc(memory, size);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
  return isRefused() ? nullptr : counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
  *memory = memalign(alignment, size);
  return *memory ? 0 : ENOMEM;
}

void free(void* memory) noexcept {
  if (memory)
    quiver_test::countRelease();
  __libc_free(memory);
}

}  // extern "C"

#pragma GCC visibility pop
// NOLINTEND(bugprone-reserved-identifier,misc-definitions-in-headers)

namespace quiver_test {

const char* reasonAgainstFaults() {
  return nullptr;
}

}  // namespace quiver_test
