// Machines for which nobody has written the seam: their calls have other numbers, and come in
// another way.

#include "fault/system_calls/failing_calls.h"
#include "fault/system_calls/system_call_seam.h"

namespace quiver_test {

SystemCallSeam::SystemCallSeam(FaultScript&) {}

SystemCallSeam::~SystemCallSeam() = default;

std::string SystemCallSeam::refusal() {
  return "the seam below system calls is written for x86-64 alone";
}

std::span<const std::int32_t> errorsOf(std::int32_t) {
  return {};
}

bool fits(const NotedCall&, std::int32_t) {
  return false;
}

bool isRemoval(std::int32_t) {
  return false;
}

bool isTransfer(std::int32_t) {
  return false;
}

bool mayLast(std::int32_t) {
  return false;
}

bool isToBeOvercome(std::int32_t) {
  return false;
}

const char* nameOf(std::int32_t) {
  return "?";
}

}  // namespace quiver_test
