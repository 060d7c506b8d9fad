// Locks with one to eight threads. Each callback of a search is called under a shared lock.

#include <shared_mutex>

#include <benchmark/benchmark.h>

#include "core/lock.h"

namespace {

constexpr int kMostThreads = 8;

void exclusiveLock(benchmark::State& state) {
  static QV_2_9::QVLock s_lock;
  for (auto iteration : state) const QV_2_9::LockGuard guard(&s_lock);
}
BENCHMARK(exclusiveLock)->ThreadRange(1, kMostThreads)->UseRealTime();

void readersOfTheSharedLock(benchmark::State& state) {
  static QV_2_9::QVSpinSharedLock s_lock;
  for (auto iteration : state) const QV_2_9::SharedLockGuard guard(&s_lock);
}
BENCHMARK(readersOfTheSharedLock)->ThreadRange(1, kMostThreads)->UseRealTime();

/// The standard library's lock, to compare with.
void readersOfTheStandardLock(benchmark::State& state) {
  static std::shared_mutex s_lock;
  for (auto iteration : state) const std::shared_lock guard(s_lock);
}
BENCHMARK(readersOfTheStandardLock)->ThreadRange(1, kMostThreads)->UseRealTime();

}  // namespace
