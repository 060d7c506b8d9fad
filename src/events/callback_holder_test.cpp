// Holders, which refer to callback objects weakly.

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/lock.h"
#include "events/callback_with_lock.h"
#include "quiver/event_generator.h"

namespace QV_2_9 {
namespace {

using Callback = CallbackWithLock;
using Holder = CallbackHolder<Callback>;

Holder copyOf(const Holder& holder) {
  return holder;
}

/// Lets another thread be quicker: it works at the moment when the lock is asked for.
class ContestedLock final : public ISpinSharedLock {
 public:
  void lock() QV_NO_THREAD_SAFETY_ANALYSIS override {
    if (const std::function<void()> work = std::exchange(m_meanwhile, nullptr))
      work();
  }
  void unlock() QV_NO_THREAD_SAFETY_ANALYSIS override {}
  void lockShared() QV_NO_THREAD_SAFETY_ANALYSIS override {}
  void unlockShared() QV_NO_THREAD_SAFETY_ANALYSIS override {}

  std::function<void()> m_meanwhile;
};

TEST(CallbackHolder, LeavesACallbackAloneThatGoesWhileItWaitsForTheLock) {
  static ContestedLock lock;
  class Going final : public EventGenerator {
   public:
    ISpinSharedLock* getLock() override { return &lock; }
    void removeHandler(IEventHandler* handler) {
      ADD_FAILURE() << "it is gone by then";
      EventGenerator::removeHandler(handler);
    }
  };
  auto callback = std::make_unique<Going>();
  {
    const CallbackHolder<Going> holder(callback.get());
    lock.m_meanwhile = [&] {
      callback->disconnectHandlers();
      callback = nullptr;
    };
  }
  EXPECT_EQ(callback, nullptr);
}

TEST(CallbackHolder, IsEmptyAtFirst) {
  const Holder holder;
  EXPECT_EQ(holder.getCallback(), nullptr);
  EXPECT_EQ(holder.getLock(), nullptr);
}

TEST(CallbackHolder, OverNullIsEmpty) {
  const Holder holder(nullptr);
  EXPECT_EQ(holder.getCallback(), nullptr);
  EXPECT_EQ(holder.getLock(), nullptr);
}

TEST(CallbackHolder, RefersToTheCallbackAndItsLock) {
  Callback callback;
  const Holder holder(&callback);
  EXPECT_EQ(holder.getCallback(), &callback);
  EXPECT_EQ(holder.getLock(), &callback.lock);
}

TEST(CallbackHolder, IsEmptiedWhenTheCallbackIsDestroyed) {
  static QVSpinSharedLock classLock;
  class Shared final : public EventGenerator {
   public:
    ISpinSharedLock* getLock() override { return &classLock; }
  };
  CallbackHolder<Shared> holder;
  {
    Shared callback;
    holder = CallbackHolder<Shared>(&callback);
    EXPECT_EQ(holder.getCallback(), &callback);
  }
  EXPECT_EQ(holder.getCallback(), nullptr);
  EXPECT_EQ(holder.getLock(), &classLock);  // kept: it belongs to the class
  EXPECT_EQ(classLock.count(), 0);
}

TEST(CallbackHolder, IsEmptiedByDisconnectAndMayAttachAgain) {
  Callback callback;
  Holder first(&callback);
  const Holder second(&callback);
  callback.disconnectHandlers();
  EXPECT_EQ(first.getCallback(), nullptr);
  EXPECT_EQ(second.getCallback(), nullptr);
  first = Holder(&callback);
  EXPECT_EQ(first.getCallback(), &callback);
  callback.disconnectHandlers();
  EXPECT_EQ(first.getCallback(), nullptr);
}

TEST(CallbackHolder, CopyIsAHandlerOfItsOwn) {
  Callback callback;
  Holder first(&callback);
  const Holder copy = copyOf(first);
  EXPECT_EQ(copy.getCallback(), &callback);
  EXPECT_EQ(copy.getLock(), &callback.lock);
  callback.disconnectHandlers();
  EXPECT_EQ(first.getCallback(), nullptr);
  EXPECT_EQ(copy.getCallback(), nullptr);
}

TEST(CallbackHolder, DestroyedCopyTakesOnlyItselfOut) {
  Callback callback;
  Holder first(&callback);
  { const Holder copy = copyOf(first); }
  EXPECT_EQ(first.getCallback(), &callback);
  callback.disconnectHandlers();
  EXPECT_EQ(first.getCallback(), nullptr);
}

TEST(CallbackHolder, CopyOfAnEmptiedHolderHasNoLock) {
  Callback callback;
  const Holder first(&callback);
  callback.disconnectHandlers();
  EXPECT_EQ(first.getLock(), &callback.lock);
  const Holder copy = copyOf(first);
  EXPECT_EQ(copy.getCallback(), nullptr);
  EXPECT_EQ(copy.getLock(), nullptr);
}

TEST(CallbackHolder, AssignmentLeavesTheOldCallbackAndJoinsTheNew) {
  Callback oldCallback;
  Callback newCallback;
  Holder holder(&oldCallback);
  holder = Holder(&newCallback);
  EXPECT_EQ(holder.getCallback(), &newCallback);
  EXPECT_EQ(holder.getLock(), &newCallback.lock);
  oldCallback.disconnectHandlers();
  EXPECT_EQ(holder.getCallback(), &newCallback);
  newCallback.disconnectHandlers();
  EXPECT_EQ(holder.getCallback(), nullptr);
}

TEST(CallbackHolder, AssigningAnEmptyHolderTakesItOut) {
  Callback callback;
  Holder holder(&callback);
  holder = Holder();
  EXPECT_EQ(holder.getCallback(), nullptr);
  EXPECT_EQ(holder.getLock(), nullptr);
}

// Looks whether a holder still has its callback when it is told.
class Probe final : public IEventHandler {
 public:
  explicit Probe(const Holder& holder) : m_holder(holder) {}
  void onGeneratorChanged(EventGenerator*) override {
    sawCallback = m_holder.getCallback() != nullptr;
  }
  bool sawCallback = false;

 private:
  const Holder& m_holder;
};

TEST(CallbackHolder, AssigningTheSameCallbackMovesTheHolderToTheEnd) {
  Callback callback;
  Holder holder(&callback);
  Probe probe(holder);
  callback.addHandler(&probe);

  const Holder other(&callback);
  holder = other;
  EXPECT_EQ(holder.getCallback(), &callback);
  callback.disconnectHandlers();
  EXPECT_TRUE(probe.sawCallback);
  EXPECT_EQ(holder.getCallback(), nullptr);
}

TEST(CallbackHolder, SurvivesSelfAssignmentRegisteredOnce) {
  Callback callback;
  auto holder = std::make_unique<Holder>(&callback);
  const Holder& alias = *holder;
  *holder = alias;
  EXPECT_EQ(holder->getCallback(), &callback);
  EXPECT_EQ(holder->getLock(), &callback.lock);
  // A second registration would be told after the holder's end.
  holder.reset();
  callback.disconnectHandlers();
}

TEST(CallbackHolder, TakesItselfOutWhenItEnds) {
  Callback callback;
  auto holder = std::make_unique<Holder>(&callback);
  holder.reset();
  EXPECT_NO_FATAL_FAILURE(callback.disconnectHandlers());
}

TEST(CallbackHolder, IgnoresANewsThatNamesAGenerator) {
  Callback callback;
  Holder holder(&callback);
  holder.onGeneratorChanged(&callback);
  EXPECT_EQ(holder.getCallback(), &callback);
}

// Holders of one callback come and go on several threads, from its first handler on.
TEST(CallbackHolder, AttachesAndDetachesOnSeveralThreads) {
  Callback callback;
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 50; ++round) {
        const Holder holder(&callback);
        const Holder copy = copyOf(holder);
        if (copy.getCallback() != &callback)
          ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(callback.lock.count(), 0);
}

}  // namespace
}  // namespace QV_2_9
