// Callback objects, their handlers, and the holders that refer to them weakly.

#include "quiver/event_generator.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/lock.h"
#include "events/locked_callback.h"

namespace QV_2_9 {
namespace {

// Outlives the event generator beside it: handlers are told, under the lock, when that one ends.
struct LockOwner {
  QVSpinSharedLock lock;
};

// A callback class of the test's own: each object has its own lock, so that tests see it.
class Callback final : public LockOwner, public EventGenerator {
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

using Holder = CallbackHolder<Callback>;

// Writes its name into a log when it is told, and then does what the test wants.
class Handler final : public IEventHandler {
 public:
  Handler(std::string name, std::vector<std::string>& log) : m_name(std::move(name)), m_log(log) {}

  void onGeneratorChanged(EventGenerator* generator) override {
    EXPECT_EQ(generator, nullptr);
    m_log.push_back(m_name);
    if (then)
      then();
  }

  std::function<void()> then;

 private:
  std::string m_name;
  std::vector<std::string>& m_log;
};

using Log = std::vector<std::string>;

class EventGeneratorTest : public testing::Test {
 protected:
  Log m_log;
  Handler m_a{"a", m_log};
  Handler m_b{"b", m_log};
  Handler m_c{"c", m_log};
  Callback m_callback;  // goes first: it tells handlers that are still there
};

TEST_F(EventGeneratorTest, TellsHandlersInTheOrderOfRegistration) {
  m_callback.addHandler(&m_b);
  m_callback.addHandler(&m_a);
  m_callback.addHandler(&m_c);
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"b", "a", "c"}));
}

TEST_F(EventGeneratorTest, ForgetsHandlersThatWereDisconnected) {
  m_callback.addHandler(&m_a);
  m_callback.disconnectHandlers();
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a"}));
}

TEST_F(EventGeneratorTest, TellsHandlersWhenItIsDestroyed) {
  {
    Callback callback;
    callback.addHandler(&m_a);
    callback.addHandler(&m_b);
  }
  EXPECT_EQ(m_log, (Log{"a", "b"}));
}

TEST_F(EventGeneratorTest, TellsAHandlerOncePerRegistration) {
  m_callback.addHandler(&m_a);
  m_callback.addHandler(&m_a);
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a", "a"}));
}

TEST_F(EventGeneratorTest, RemovesOneRegistrationPerCall) {
  m_callback.addHandler(&m_a);
  m_callback.addHandler(&m_a);
  m_callback.removeHandler(&m_a);
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a"}));

  m_callback.addHandler(&m_a);
  m_callback.addHandler(&m_a);
  m_callback.removeHandler(&m_a);
  m_callback.removeHandler(&m_a);
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a"}));
}

TEST_F(EventGeneratorTest, RemovesTheOldestRegistrationAndKeepsTheOrder) {
  for (Handler* handler : {&m_a, &m_b, &m_a, &m_c}) m_callback.addHandler(handler);
  m_callback.removeHandler(&m_a);
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"b", "a", "c"}));
}

TEST_F(EventGeneratorTest, IgnoresTheRemovalOfAStranger) {
  m_callback.addHandler(&m_a);
  m_callback.removeHandler(&m_b);
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a"}));
}

TEST_F(EventGeneratorTest, AsksForTheLockOnceAndOnlyWhenAHandlerComes) {
  m_callback.removeHandler(&m_a);
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_callback.lockQuestions, 0);
  m_callback.addHandler(&m_a);
  m_callback.addHandler(&m_b);
  m_callback.removeHandler(&m_a);
  EXPECT_EQ(m_callback.lockQuestions, 1);
}

TEST_F(EventGeneratorTest, TakesNoLockBeforeTheFirstHandler) {
  m_callback.lock.lockShared();
  m_callback.removeHandler(&m_a);  // an exclusive lock would wait for ever here
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_callback.lock.count(), 1);
  m_callback.lock.unlockShared();
}

TEST_F(EventGeneratorTest, HoldsTheLockExclusivelyWhileItTells) {
  int countInside = 0;
  m_a.then = [&] { countInside = m_callback.lock.count(); };
  m_callback.addHandler(&m_a);
  m_callback.disconnectHandlers();
  EXPECT_EQ(countInside, -1);
  EXPECT_EQ(m_callback.lock.count(), 0);
}

TEST_F(EventGeneratorTest, PassesNobodyOverWhenAHandlerRemovesItself) {
  for (Handler* handler : {&m_a, &m_b, &m_c}) m_callback.addHandler(handler);
  m_a.then = [&] { m_callback.removeHandler(&m_a); };
  m_b.then = [&] { m_callback.removeHandler(&m_b); };
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a", "b", "c"}));
}

TEST_F(EventGeneratorTest, PassesNobodyOverWhenAHandlerRemovesOneOfTwoRegistrations) {
  for (Handler* handler : {&m_a, &m_a, &m_b}) m_callback.addHandler(handler);
  m_a.then = [&] { m_callback.removeHandler(&m_a); };
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a", "a", "b"}));
}

TEST_F(EventGeneratorTest, PassesNobodyOverWhenAHandlerRemovesAnEarlierOne) {
  for (Handler* handler : {&m_a, &m_b, &m_c}) m_callback.addHandler(handler);
  m_b.then = [&] { m_callback.removeHandler(&m_a); };
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a", "b", "c"}));
}

TEST_F(EventGeneratorTest, DoesNotTellAHandlerThatAnotherRemovedBefore) {
  for (Handler* handler : {&m_a, &m_b, &m_c}) m_callback.addHandler(handler);
  m_a.then = [&] { m_callback.removeHandler(&m_b); };
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a", "c"}));
}

TEST_F(EventGeneratorTest, StoresAndRemovesNullHandlersAndSkipsThemWhenTelling) {
  m_callback.addHandler(nullptr);
  m_callback.addHandler(&m_a);
  m_callback.addHandler(nullptr);
  m_callback.removeHandler(nullptr);
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a"}));
}

TEST_F(EventGeneratorTest, TakesHandlersAgainAfterDisconnecting) {
  m_callback.addHandler(&m_a);
  m_callback.disconnectHandlers();
  m_callback.addHandler(&m_b);
  m_callback.disconnectHandlers();
  EXPECT_EQ(m_log, (Log{"a", "b"}));
}

TEST(EventGenerator, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<Callback>);
  EXPECT_FALSE(std::is_copy_assignable_v<Callback>);
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
  const Holder copy(first);
  EXPECT_EQ(copy.getCallback(), &callback);
  EXPECT_EQ(copy.getLock(), &callback.lock);
  callback.disconnectHandlers();
  EXPECT_EQ(first.getCallback(), nullptr);
  EXPECT_EQ(copy.getCallback(), nullptr);
}

TEST(CallbackHolder, DestroyedCopyTakesOnlyItselfOut) {
  Callback callback;
  Holder first(&callback);
  { const Holder copy(first); }
  EXPECT_EQ(first.getCallback(), &callback);
  callback.disconnectHandlers();
  EXPECT_EQ(first.getCallback(), nullptr);
}

TEST(CallbackHolder, CopyOfAnEmptiedHolderHasNoLock) {
  Callback callback;
  const Holder first(&callback);
  callback.disconnectHandlers();
  EXPECT_EQ(first.getLock(), &callback.lock);
  const Holder copy(first);
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

// A handler that is told after the holder: the holder was re-registered behind it.
TEST(CallbackHolder, AssigningTheSameCallbackMovesTheHolderToTheEnd) {
  Callback callback;
  Log log;
  Handler probe("probe", log);
  Holder holder(&callback);
  callback.addHandler(&probe);
  bool holderWasStillAttached = false;
  probe.then = [&] { holderWasStillAttached = holder.getCallback() != nullptr; };

  const Holder other(&callback);
  holder = other;
  EXPECT_EQ(holder.getCallback(), &callback);
  callback.disconnectHandlers();
  EXPECT_TRUE(holderWasStillAttached);
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

TEST(LockedCallback, CallbackMayBeDestroyedWhileOthersCallIt) {
  static QVSpinSharedLock classLock;
  class Shared final : public EventGenerator {
   public:
    ~Shared() override { disconnectHandlers(); }
    ISpinSharedLock* getLock() override { return &classLock; }
    int answer() const { return m_answer; }

   private:
    int m_answer = 42;
  };
  CallbackHolder<Shared> holder;
  auto callback = std::make_unique<Shared>();
  holder = CallbackHolder<Shared>(callback.get());

  std::atomic<int> calls{0};
  std::atomic<int> wrongAnswers{0};
  std::atomic<bool> gone{false};
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      while (!gone) {
        {
          const LockedCallback<Shared> locked(holder);
          if (locked && locked->answer() != 42)
            ++wrongAnswers;
          if (locked)
            ++calls;
        }
        // Claimants get through only when nobody holds the lock for a moment.
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    });
  }
  while (calls < 10) std::this_thread::yield();
  callback.reset();
  EXPECT_EQ(holder.getCallback(), nullptr);
  const int callsAtTheEnd = calls;
  gone = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrongAnswers, 0);
  EXPECT_GE(callsAtTheEnd, 10);
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
        const Holder copy(holder);
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
