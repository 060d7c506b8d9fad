// Machines for which nobody has written the seam.

#include "fault/system_calls/system_call_seam.h"

namespace quiver_test {

SystemCallSeam::SystemCallSeam(FaultScript&) {}

SystemCallSeam::~SystemCallSeam() = default;

std::string SystemCallSeam::refusal() {
  return "the seam below system calls is written for x86-64 alone";
}

}  // namespace quiver_test
