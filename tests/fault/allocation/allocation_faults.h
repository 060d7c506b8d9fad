// Lets every allocation of a call fail, one after the other, and looks at what is left.

#pragma once

#include <functional>
#include <memory>

#include <gtest/gtest.h>

namespace quiver_test {

/// A call on objects of its own. Whatever is not fresh for each attempt must not change.
class Attempt {
 public:
  virtual ~Attempt() = default;

  /// The call; allocations fail while it runs. Only std::bad_alloc may leave it.
  virtual void run() = 0;

  /// Looks at what `run` has left. Without `hasThrown` nothing but the right outcome will do.
  virtual void expectSound(bool /*hasThrown*/) {}

  /// Uses the same objects with all the memory there is: nothing but the right outcome will do.
  /// Asked twice, by the thread of the call and by another.
  virtual void expectUsable() = 0;
};

using MakeAttempt = std::function<std::unique_ptr<Attempt>()>;

class AllocationFaultsPosix : public testing::Test {
 protected:
  void SetUp() override;

  /// Runs an attempt for each allocation of the call that can fail: that one alone, then that one
  /// and all behind it. Expects that nothing leaks, of memory or descriptors.
  static void expectNoHarm(const MakeAttempt& make);

  /// The same in a process of its own for each, in which the call is the first.
  static void expectNoHarmInNewProcess(const MakeAttempt& make);
};

}  // namespace quiver_test
