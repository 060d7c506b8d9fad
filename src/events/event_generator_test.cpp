// Callback objects and their handlers.

#include "quiver/event_generator.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "events/callback_with_lock.h"

namespace QV_2_9 {
namespace {

using Callback = CallbackWithLock;

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

TEST(EventGenerator, IsDisconnectedOnOneThreadWhileItGetsItsFirstHandlerOnAnother) {
  for (int round = 0; round < 200; ++round) {
    Log log;
    Handler handler("a", log);
    Callback callback;
    std::atomic<bool> isReady = false;
    std::thread other([&] {
      isReady = true;
      callback.addHandler(&handler);
    });
    while (!isReady) std::this_thread::yield();
    callback.disconnectHandlers();
    other.join();
    callback.disconnectHandlers();
    EXPECT_EQ(log, (Log{"a"}));
  }
}

/// A callback that is used on one thread alone.
class CallbackWithoutLock final : public EventGenerator {
 public:
  ISpinSharedLock* getLock() override { return nullptr; }
};

TEST(EventGenerator, TellsAHandlerOnceAlsoWithoutALock) {
  Log log;
  Handler handler("a", log);
  CallbackWithoutLock callback;
  callback.addHandler(&handler);
  callback.disconnectHandlers();
  callback.disconnectHandlers();
  EXPECT_EQ(log, (Log{"a"}));
}

TEST(EventGenerator, TellsAHandlerOfItsEndAlsoWithoutALock) {
  Log log;
  Handler handler("a", log);
  { CallbackWithoutLock().addHandler(&handler); }
  EXPECT_EQ(log, (Log{"a"}));
}

TEST(EventGenerator, DoesNotTellARemovedHandlerAlsoWithoutALock) {
  Log log;
  Handler handler("a", log);
  Handler other("b", log);
  CallbackWithoutLock callback;
  callback.addHandler(&handler);
  callback.addHandler(&other);
  callback.removeHandler(&handler);
  callback.disconnectHandlers();
  EXPECT_EQ(log, (Log{"b"}));
}

TEST(EventGenerator, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<Callback>);
  EXPECT_FALSE(std::is_copy_assignable_v<Callback>);
}

}  // namespace
}  // namespace QV_2_9
