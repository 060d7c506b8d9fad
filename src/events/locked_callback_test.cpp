// Callbacks held for the time of a call.

#include "events/locked_callback.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "core/lock.h"
#include "events/callback_with_lock.h"

namespace QV_2_9 {
namespace {

using Callback = CallbackWithLock;
using Holder = CallbackHolder<Callback>;

TEST(LockedCallback, OverAnEmptyHolderHoldsNothing) {
  const Holder holder;
  const LockedCallback<Callback> locked(holder);
  EXPECT_FALSE(locked);
  EXPECT_EQ(locked.get(), nullptr);
}

TEST(LockedCallback, HoldsTheSharedLockForItsScope) {
  Callback callback;
  const Holder holder(&callback);
  {
    const LockedCallback<Callback> locked(holder);
    EXPECT_EQ(locked.get(), &callback);
    EXPECT_EQ(locked->call(), 1);
    EXPECT_EQ(callback.lock.count(), 1);
  }
  EXPECT_EQ(callback.lock.count(), 0);
}

TEST(LockedCallback, TakesNoLockForAHolderThatWasEmptied) {
  Callback callback;
  const Holder holder(&callback);
  callback.disconnectHandlers();
  const LockedCallback<Callback> locked(holder);
  EXPECT_FALSE(locked);
  EXPECT_EQ(callback.lock.count(), 0);
}

TEST(LockedCallback, LetsGoBeforeTheEndOfItsScope) {
  Callback callback;
  const Holder holder(&callback);
  LockedCallback<Callback> locked(holder);
  locked.release();
  EXPECT_FALSE(locked);
  EXPECT_EQ(callback.lock.count(), 0);
  locked.release();
  EXPECT_EQ(callback.lock.count(), 0);
}

TEST(LockedCallback, LetsGoWhenAnExceptionLeaves) {
  Callback callback;
  const Holder holder(&callback);
  try {
    const LockedCallback<Callback> locked(holder);
    throw 1;
  } catch (int) {
  }
  EXPECT_EQ(callback.lock.count(), 0);
}

// The callback goes while a caller waits for the lock: it must see that afterwards.
TEST(LockedCallback, ReadsTheCallbackAgainUnderTheLock) {
  Callback callback;
  const Holder holder(&callback);
  std::atomic<bool> started{false};
  std::atomic<bool> foundNone{false};
  callback.lock.lock();
  std::thread caller([&] {
    started = true;
    const LockedCallback<Callback> locked(holder);
    foundNone = !locked;
  });
  while (!started) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(25));
  callback.disconnectHandlers();
  callback.lock.unlock();
  caller.join();
  EXPECT_TRUE(foundNone);
  EXPECT_EQ(callback.lock.count(), 0);
}

// As a caller's callback that may go at any time should be: it disconnects first.
class Mortal final : public EventGenerator {
 public:
  explicit Mortal(ISpinSharedLock& classLock) : m_classLock(classLock) {}
  ~Mortal() override { disconnectHandlers(); }

  ISpinSharedLock* getLock() override { return &m_classLock; }
  int answer() const { return m_answer; }

 private:
  ISpinSharedLock& m_classLock;
  int m_answer = 42;
};

struct CallCounts {
  std::atomic<int> calls{0};
  std::atomic<int> wrongAnswers{0};
};

void callOnce(const CallbackHolder<Mortal>& holder, CallCounts& counts) {
  const LockedCallback<Mortal> locked(holder);
  if (!locked)
    return;
  ++counts.calls;
  if (locked->answer() != 42)
    ++counts.wrongAnswers;
}

void callUntil(const std::atomic<bool>& end,
               const CallbackHolder<Mortal>& holder,
               CallCounts& counts) {
  while (!end) {
    callOnce(holder, counts);
    // Claimants get through only when nobody holds the lock for a moment.
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

TEST(LockedCallback, CallbackMayBeDestroyedWhileOthersCallIt) {
  QVSpinSharedLock classLock;
  auto callback = std::make_unique<Mortal>(classLock);
  const CallbackHolder<Mortal> holder(callback.get());
  CallCounts counts;
  std::atomic<bool> end{false};
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) threads.emplace_back([&] { callUntil(end, holder, counts); });

  while (counts.calls < 10) std::this_thread::yield();
  callback.reset();
  EXPECT_EQ(holder.getCallback(), nullptr);
  const int callsAtTheEnd = counts.calls;
  end = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(counts.wrongAnswers, 0);
  EXPECT_EQ(counts.calls, callsAtTheEnd);
}

}  // namespace
}  // namespace QV_2_9
