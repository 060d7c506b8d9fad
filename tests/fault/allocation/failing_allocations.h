// Makes allocations fail, one thread's at a time, and counts what is allocated.
//
// The program's own allocator (allocator_*.cpp) asks `refusesNow` before it gives out memory. Which
// one is built in depends on the build: that of the C library where nothing else replaces it,
// operator new under the address sanitizer, none under the thread sanitizer.

#pragma once

namespace quiver_test {

enum class Failing {
  kOnce,       ///< One allocation.
  kFromThere,  ///< It and all that follow.
};

/// Returns why no allocation can fail in this build. Null when they can.
const char* reasonAgainstFaults();

/// Lets allocations of this thread fail, from the construction to the end.
class FailingAllocations final {
 public:
  /// `number` counts from 1.
  FailingAllocations(int number, Failing failing);
  ~FailingAllocations();

  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

  /// Returns whether one has failed.
  static bool hasFailed();
};

/// Writes the calls that led to the last allocation that failed on standard error, for addr2line.
void showLastFailure();

/// Returns how many allocations of the process have not been freed.
long liveAllocations();

// For the allocators.

/// Returns true when the allocation that this thread asks for has to fail.
bool refusesNow();
void countAllocation();
void countRelease();

}  // namespace quiver_test
