// The two locks, with threads.
//
// A test that a thread waits watches that it has not passed for a few polling intervals; everything
// else is handed over by flags, so that nothing depends on speed.

#include "core/lock.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

namespace QV_2_9 {
namespace {

// Lock misuse on purpose, and lock state that moves between functions and threads.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wthread-safety-analysis"
#endif

void waitUntil(const std::function<bool()>& condition) {
  while (!condition()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// Long enough for a waiting thread to try several times.
void letOthersTry() {
  std::this_thread::sleep_for(std::chrono::milliseconds(35));
}

// Runs `body` on a thread and says whether it is through.
class Runner final {
 public:
  explicit Runner(std::function<void()> body)
      : m_thread([this, body = std::move(body)] {
          m_started = true;
          body();
          m_done = true;
        }) {
    waitUntil([this] { return m_started.load(); });
  }
  ~Runner() { join(); }

  void join() {
    if (m_thread.joinable())
      m_thread.join();
  }
  bool done() const { return m_done; }
  bool waits() const {
    letOthersTry();
    return !m_done;
  }

 private:
  std::atomic<bool> m_started{false};
  std::atomic<bool> m_done{false};
  std::thread m_thread;
};

TEST(QVLock, OwnerMayLockAgainAndMustUnlockAsOften) {
  QVLock lock;
  lock.lock();
  lock.lock();
  Runner other([&lock] {
    lock.lock();
    lock.unlock();
  });
  lock.unlock();
  EXPECT_TRUE(other.waits());
  lock.unlock();
  other.join();
  EXPECT_TRUE(other.done());
}

TEST(QVLock, ExcludesOtherThreads) {
  QVLock lock;
  int value = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&lock, &value] {
      for (int round = 0; round < 1000; ++round) {
        const LockGuard guard(&lock);
        ++value;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(value, 4000);
}

TEST(QVLock, IsTriedWithoutWaiting) {
  QVLock lock;
  ASSERT_TRUE(lock.tryLock());
  EXPECT_TRUE(lock.tryLock()) << "its owner may lock again";
  const auto tryElsewhere = [&lock] {
    bool isTaken = false;
    std::thread([&] {
      isTaken = lock.tryLock();
      if (isTaken)
        lock.unlock();
    }).join();
    return isTaken;
  };
  EXPECT_FALSE(tryElsewhere());
  lock.unlock();
  EXPECT_FALSE(tryElsewhere());
  lock.unlock();
  EXPECT_TRUE(tryElsewhere());
}

TEST(QVSpinSharedLock, SharedModeIsReEntrant) {
  QVSpinSharedLock lock;
  lock.lockShared();
  lock.lockShared();
  EXPECT_EQ(lock.count(), 2);
  lock.unlockShared();
  lock.unlockShared();
  EXPECT_EQ(lock.count(), 0);
}

TEST(QVSpinSharedLock, ExclusiveModeIsReEntrant) {
  QVSpinSharedLock lock;
  lock.lock();
  EXPECT_EQ(lock.count(), -1);
  lock.lock();
  EXPECT_EQ(lock.count(), -2);
  lock.unlock();
  lock.unlock();
  EXPECT_EQ(lock.count(), 0);
}

TEST(QVSpinSharedLock, SharedHoldersOfSeveralThreadsRunAtOnce) {
  QVSpinSharedLock lock;
  lock.lockShared();
  Runner other([&lock] {
    lock.lockShared();
    lock.unlockShared();
  });
  other.join();
  EXPECT_EQ(lock.count(), 1);
  lock.unlockShared();
}

TEST(QVSpinSharedLock, ClaimantWaitsForTheSharedHolder) {
  QVSpinSharedLock lock;
  std::atomic<bool> mayUnlock{false};
  lock.lockShared();
  Runner claimant([&] {
    lock.lock();
    waitUntil([&] { return mayUnlock.load(); });
    lock.unlock();
  });
  letOthersTry();
  EXPECT_EQ(lock.count(), 1);
  lock.unlockShared();
  waitUntil([&] { return lock.count() == -1; });
  letOthersTry();
  EXPECT_EQ(lock.count(), -1);
  mayUnlock = true;
  claimant.join();
  EXPECT_EQ(lock.count(), 0);
}

TEST(QVSpinSharedLock, SharedHolderWaitsForTheOwner) {
  QVSpinSharedLock lock;
  lock.lock();
  Runner reader([&lock] {
    lock.lockShared();
    lock.unlockShared();
  });
  EXPECT_TRUE(reader.waits());
  EXPECT_EQ(lock.count(), -1);
  lock.unlock();
  reader.join();
  EXPECT_EQ(lock.count(), 0);
}

TEST(QVSpinSharedLock, WaitingClaimantDoesNotKeepASharedHolderFromReEntering) {
  QVSpinSharedLock lock;
  lock.lockShared();
  Runner claimant([&lock] {
    lock.lock();
    lock.unlock();
  });
  letOthersTry();
  lock.lockShared();
  EXPECT_EQ(lock.count(), 2);
  lock.unlockShared();
  lock.unlockShared();
  claimant.join();
  EXPECT_EQ(lock.count(), 0);
}

TEST(QVSpinSharedLock, ClaimantsStackAndAreServedOneAtATime) {
  QVSpinSharedLock lock;
  std::atomic<int> owners{0};
  std::atomic<int> mostOwners{0};
  const auto claim = [&] {
    lock.lock();
    const int now = ++owners;
    if (now > mostOwners)
      mostOwners = now;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    --owners;
    lock.unlock();
  };
  lock.lock();
  {
    Runner first(claim);
    Runner second(claim);
    waitUntil([&] { return lock.count() == -3; });
    EXPECT_EQ(owners, 0);
    lock.unlock();
  }
  EXPECT_EQ(mostOwners, 1);
  EXPECT_EQ(lock.count(), 0);
}

TEST(QVSpinSharedLock, ReaderWaitsUntilEveryClaimantHasUnlocked) {
  QVSpinSharedLock lock;
  std::atomic<bool> mayUnlock{false};
  lock.lock();
  Runner claimant([&] {
    lock.lock();
    waitUntil([&] { return mayUnlock.load(); });
    lock.unlock();
  });
  waitUntil([&] { return lock.count() == -2; });
  Runner reader([&] {
    lock.lockShared();
    lock.unlockShared();
  });
  lock.unlock();
  EXPECT_TRUE(reader.waits());
  EXPECT_EQ(lock.count(), -1);
  mayUnlock = true;
  claimant.join();
  reader.join();
  EXPECT_EQ(lock.count(), 0);
}

TEST(QVSpinSharedLock, FirstAttemptIsMadeAtOnce) {
  QVSpinSharedLock lock;
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 1000; ++i) {
    lock.lockShared();
    lock.unlockShared();
    lock.lock();
    lock.unlock();
  }
  // A pause before each attempt would make twenty seconds.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
}

TEST(QVSpinSharedLock, KeepsReadersAndWritersApart) {
  QVSpinSharedLock lock;
  int value = 0;  // plain on purpose: the lock alone makes this right
  std::atomic<bool> torn{false};
  std::vector<std::thread> threads;
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 50; ++round) {
        const SharedLockGuard guard(&lock);
        if (value % 2 != 0)
          torn = true;
      }
    });
    threads.emplace_back([&] {
      for (int round = 0; round < 50; ++round) {
        const LockGuard guard(&lock);
        ++value;
        ++value;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_FALSE(torn);
  EXPECT_EQ(value, 200);
  EXPECT_EQ(lock.count(), 0);
}

TEST(LockGuard, HoldsTheLockForItsScope) {
  QVSpinSharedLock lock;
  {
    const LockGuard guard(&lock);
    EXPECT_EQ(lock.count(), -1);
  }
  EXPECT_EQ(lock.count(), 0);
}

TEST(LockGuard, ReleasesWhenAnExceptionLeaves) {
  QVSpinSharedLock lock;
  try {
    const LockGuard guard(&lock);
    throw std::runtime_error("left");
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(lock.count(), 0);
}

TEST(SharedLockGuard, HoldsTheLockForItsScope) {
  QVSpinSharedLock lock;
  {
    const SharedLockGuard guard(&lock);
    EXPECT_EQ(lock.count(), 1);
  }
  EXPECT_EQ(lock.count(), 0);
}

TEST(SharedLockGuard, ReleasesWhenAnExceptionLeaves) {
  QVSpinSharedLock lock;
  try {
    const SharedLockGuard guard(&lock);
    throw std::runtime_error("left");
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(lock.count(), 0);
}

TEST(Guards, DoNothingOverANullPointer) {
  EXPECT_NO_FATAL_FAILURE({
    const LockGuard exclusive(nullptr);
    const SharedLockGuard shared(nullptr);
  });
}

TEST(Locks, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<QVLock>);
  EXPECT_FALSE(std::is_copy_constructible_v<QVSpinSharedLock>);
}

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

}  // namespace
}  // namespace QV_2_9
