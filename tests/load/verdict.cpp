// Bounds.

#include "load/verdict.h"

#include <string>

namespace quiver_load {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;
// The library keeps the indexes of this many trees, and one for directories that are searched
// alone.
constexpr std::size_t kMostIndexes = 25;
// The module for symbol servers keeps the pair of sockets with which its transport is woken.
constexpr std::size_t kKeptByModule = 2;

void checkAtMost(std::size_t count, std::size_t most, const std::string& what, Findings& findings) {
  if (count > most)
    findings.add(what + ": " + std::to_string(count) + ", allowed: " + std::to_string(most));
}

}  // namespace

std::size_t allowedGrowth(std::size_t before) {
  return 12 * kMiB + before / 8;
}

void checkMemory(std::size_t before, std::size_t after, Findings& findings) {
  checkAtMost(after / kMiB, (before + allowedGrowth(before)) / kMiB, "MiB of memory", findings);
}

void checkDescriptors(const Descriptors& before, const Descriptors& after, Findings& findings) {
  checkAtMost(after.noticeQueues, kMostIndexes, "queues of notices", findings);
  checkAtMost(after.mountTables, after.noticeQueues, "tables of mounts", findings);
  const std::size_t most = before.others.size() + kKeptByModule;
  checkAtMost(after.others.size(), most, "other descriptors", findings);
  if (after.others.size() > most)
    for (const std::string& other : after.others) findings.add("open at the end: " + other);
}

}  // namespace quiver_load
