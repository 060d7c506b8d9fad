// A callback class for tests: every object has a lock of its own, so that a test sees what is done
// with it.

#pragma once

#include <atomic>

#include "core/lock.h"
#include "quiver/event_generator.h"

namespace QV_2_9 {

// Outlives the event generator beside it: handlers are told, under the lock, when that one ends.
struct LockOwner {
  QVSpinSharedLock lock;
};

class CallbackWithLock final : public LockOwner, public EventGenerator {
 public:
  ISpinSharedLock* getLock() override {
    ++lockQuestions;
    return &lock;
  }
  int call() { return ++m_calls; }

  std::atomic<int> lockQuestions{0};

 private:
  int m_calls = 0;
};

}  // namespace QV_2_9
