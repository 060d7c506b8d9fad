// Times of files, which the system counts in ticks since 1601.

#pragma once

#include <cstdint>

namespace PAKU_3_1::internal {

inline constexpr std::int64_t kTicksTo1970 = 116'444'736'000'000'000;

/// Rounds down.
inline std::int64_t secondsSince1970(std::int64_t ticksSince1601) {
  constexpr std::int64_t kTicksPerSecond = 10'000'000;
  const std::int64_t ticks = ticksSince1601 - kTicksTo1970;
  const bool isCut = ticks % kTicksPerSecond < 0;
  return ticks / kTicksPerSecond - (isCut ? 1 : 0);
}

inline std::int64_t nanosecondsSince1970(std::int64_t ticksSince1601) {
  constexpr std::int64_t kNanosecondsPerTick = 100;
  return (ticksSince1601 - kTicksTo1970) * kNanosecondsPerTick;
}

}  // namespace PAKU_3_1::internal
