// The allocator stays as it is.

#include "fault/allocation/failing_allocations.h"

namespace quiver_test {

const char* reasonAgainstFaults() {
  return "the thread sanitizer has an allocator that lets no other refuse";
}

}  // namespace quiver_test
