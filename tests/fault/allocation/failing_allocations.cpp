// Counts, without allocating.

#include "fault/allocation/failing_allocations.h"

#include <array>
#include <atomic>
#include <execinfo.h>
#include <unistd.h>

namespace quiver_test {
namespace {

struct OfThread {
  bool isArmed = false;
  bool fromThere = false;
  bool hasFailed = false;
  int left = 0;  // allocations up to the one that fails
};

thread_local constinit OfThread t_state;
std::atomic<long> s_live{0};

std::array<void*, 40> s_stack;
int s_depth = 0;

void noteStack() {
  t_state.isArmed = false;
  s_depth = backtrace(s_stack.data(), static_cast<int>(s_stack.size()));
  t_state.isArmed = true;
}

}  // namespace

FailingAllocations::FailingAllocations(int number, Failing failing) {
  static const int warm = backtrace(s_stack.data(), 1);  // loads what it needs
  static_cast<void>(warm);
  t_state = {true, failing == Failing::kFromThere, false, number};
}

FailingAllocations::~FailingAllocations() {
  t_state.isArmed = false;
}

bool FailingAllocations::hasFailed() {
  return t_state.hasFailed;
}

void showLastFailure() {
  backtrace_symbols_fd(s_stack.data(), s_depth, STDERR_FILENO);
}

long liveAllocations() {
  return s_live;
}

bool refusesNow() {
  if (!t_state.isArmed)
    return false;
  if (t_state.left > 0 && --t_state.left > 0)
    return false;
  if (t_state.hasFailed)
    return t_state.fromThere;
  t_state.hasFailed = true;
  noteStack();
  return true;
}

void countAllocation() {
  s_live.fetch_add(1, std::memory_order_relaxed);
}

void countRelease() {
  s_live.fetch_sub(1, std::memory_order_relaxed);
}

}  // namespace quiver_test
