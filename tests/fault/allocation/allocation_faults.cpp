// Counts from the first allocation to the last.

#include "fault/allocation/allocation_faults.h"

#include <chrono>
#include <cstdlib>
#include <future>
#include <iostream>
#include <iterator>
#include <new>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "paku/index_settings.h"
#include "paku/tree_registry.h"

#include "fault/allocation/failing_allocations.h"

namespace quiver_test {
namespace {

constexpr std::chrono::seconds kPatience{60};
constexpr int kWarmingRuns = 3;  // the second scan of a tree makes the index
constexpr int kNever = 1 << 30;

struct Resources {
  long allocations = 0;
  std::ptrdiff_t descriptors = 0;
  bool operator==(const Resources&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Resources& resources) {
  return out << resources.allocations << " allocations, " << resources.descriptors
             << " descriptors";
}

Resources resources() {
  const std::filesystem::directory_iterator open("/proc/self/fd");
  return {liveAllocations(), std::distance(begin(open), end(open))};
}

/// A lock that the call left held lets the other thread wait for ever.
void expectUsableByAnother(Attempt& attempt) {
  std::promise<void> done;
  std::thread other([&] {
    attempt.expectUsable();
    done.set_value();
  });
  if (done.get_future().wait_for(kPatience) == std::future_status::timeout) {
    std::cerr << "another thread waits for ever\n";
    showLastFailure();
    std::abort();
  }
  other.join();
}

/// Returns true when an allocation failed.
bool attemptOnce(const MakeAttempt& make, int number, Failing failing) {
  const std::unique_ptr<Attempt> attempt = make();
  bool hasThrown = false;
  bool hasFailed = false;
  try {
    const FailingAllocations faults(number, failing);
    attempt->run();
  } catch (const std::bad_alloc&) {
    hasThrown = true;
  }
  hasFailed = FailingAllocations::hasFailed();
  EXPECT_TRUE(hasFailed || !hasThrown);
  attempt->expectSound(hasThrown);
  attempt->expectUsable();
  expectUsableByAnother(*attempt);
  return hasFailed;
}

bool attemptCleanly(const MakeAttempt& make, int number, Failing failing) {
  const bool hasFailed = attemptOnce(make, number, failing);
  PAKU_3_1::internal::TreeRegistry::instance().clear();
  return hasFailed;
}

/// Returns how many allocations failed.
int attemptAll(const MakeAttempt& make, Failing failing) {
  for (int i = 0; i < kWarmingRuns; ++i) attemptCleanly(make, kNever, failing);
  Resources before = resources();
  for (int number = 1;; ++number) {
    bool hasFailed = attemptCleanly(make, number, failing);
    // What a library keeps from its first failure on is no leak: that grows each time.
    if (const Resources after = resources(); after != before) {
      before = after;
      hasFailed = attemptCleanly(make, number, failing);
      EXPECT_EQ(resources(), before);
    }
    if (testing::Test::HasFailure()) {
      ADD_FAILURE() << "allocation " << number
                    << (failing == Failing::kOnce ? " failed" : " and all behind it failed");
      showLastFailure();
      return number;
    }
    if (!hasFailed)
      return number - 1;
  }
}

/// Runs the attempt in a child. Returns its exit status, or a negative number for a signal.
int resultInChild(const MakeAttempt& make, int number, Failing failing) {
  const pid_t child = fork();
  if (child == 0) {
    alarm(static_cast<unsigned>(kPatience.count()));
    const bool hasFailed = attemptOnce(make, number, failing);
    if (testing::Test::HasFailure())
      showLastFailure();
    _exit(testing::Test::HasFailure() ? 2 : hasFailed ? 1 : 0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

void report(int once, int fromThere) {
  testing::Test::RecordProperty("failed", once + fromThere);
  std::cout << "failed " << once << " allocations alone and " << fromThere
            << " with all behind them\n";
}

}  // namespace

void AllocationFaultsPosix::SetUp() {
  if (const char* reason = reasonAgainstFaults())
    GTEST_SKIP() << reason;
  using namespace PAKU_3_1::internal;
  setIndexSettings({IndexUse::kNever, indexSettings().maxBytes});
}

void AllocationFaultsPosix::expectNoHarm(const MakeAttempt& make) {
  const int once = attemptAll(make, Failing::kOnce);
  EXPECT_GT(once, 0) << "nothing was tested";
  if (!HasFailure())
    report(once, attemptAll(make, Failing::kFromThere));
}

void AllocationFaultsPosix::expectNoHarmInNewProcess(const MakeAttempt& make) {
  int failed[] = {0, 0};
  for (const Failing failing : {Failing::kOnce, Failing::kFromThere}) {
    int& count = failed[failing == Failing::kOnce ? 0 : 1];
    int result = 1;
    while (result == 1) result = resultInChild(make, ++count, failing);
    ASSERT_EQ(result, 0) << "allocation " << count;
    --count;
  }
  EXPECT_GT(failed[0], 0) << "nothing was tested";
  report(failed[0], failed[1]);
}

}  // namespace quiver_test
