// What the process holds of the system.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quiver_load {

/// Returns how many bytes of its memory are in use.
std::size_t residentBytes();

/// Open descriptors. Each index of a tree keeps a pair: a queue of notices and the table of mounts.
struct Descriptors {
  std::size_t noticeQueues = 0;
  std::size_t mountTables = 0;
  std::vector<std::string> others;  ///< What they are of.
};
Descriptors openDescriptors();

}  // namespace quiver_load
