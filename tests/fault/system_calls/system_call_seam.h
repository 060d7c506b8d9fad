// The seam between a program and the kernel: lets the n-th system call of the tested thread fail.
//
// The kernel hands over every call of the thread (syscall user dispatch), so nothing below the
// library is replaced and nothing in it knows. What the C library calls for the tested code can be
// failed; what a sanitizer does for itself is let through. Memory, signals and locks are left
// alone: whoever waits for a lock cannot be told that waiting failed.

#pragma once

#include <cstdint>
#include <string>

namespace quiver_test {

/// What is answered in place of an error number.
constexpr std::int32_t kShort = -1;  ///< A part of what was asked for.

/// A call that could have been failed.
struct NotedCall {
  std::int32_t number;
  std::int32_t occurrence;  ///< Of this number, from 1 on.
  bool makesFile;           ///< It may make an entry in a directory.
  bool canBeShort;
};

/// What is to happen, and what has. Shared between the process that tests and its child, so it is
/// plain memory.
struct FaultScript {
  static constexpr int kMostCalls = 8192;
  static constexpr int kMostNumbers = 512;

  // Wanted. A number of 0 with an error of 0 is: none.
  std::int32_t number;
  std::int32_t occurrence;
  std::int32_t error;  ///< Or `kShort`.
  bool isLasting;      ///< Also for what comes later, wherever the error fits.
  bool copiesByHand;   ///< The kernel copies nothing by itself.

  // Noted.
  std::int32_t struck;           ///< How many calls were failed.
  std::int32_t struckRemovals;   ///< Of these, calls that were to remove something.
  std::int32_t struckTransfers;  ///< Of these, calls that have to do with connections.
  std::int32_t unknownCall;      ///< A call that cannot be handed over; 0 for none.
  std::int32_t count;
  std::int32_t counts[kMostNumbers];
  NotedCall calls[kMostCalls];
};

/// Between construction and destruction the calls of this thread follow the script. One at a time.
class SystemCallSeam final {
 public:
  explicit SystemCallSeam(FaultScript& script);
  ~SystemCallSeam();

  SystemCallSeam(const SystemCallSeam&) = delete;
  SystemCallSeam& operator=(const SystemCallSeam&) = delete;

  /// Returns why this machine has no such seam. Empty when it has one.
  static std::string refusal();
};

}  // namespace quiver_test
