// The progress bar of `quiver resolve`: one line of a terminal that is written over and over.

#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace quiver_tool {

struct ResolveCounts {
  std::size_t done = 0;
  std::size_t all = 0;
  std::size_t missed = 0;  ///< Done, but not found.
};

/// Returns one line of 79 columns at most, such as "[####    ]  512 of 1024, 3 not found  parse.c".
std::string resolveProgressLine(const ResolveCounts& counts, const std::string& name);

class ResolveProgress final {
 public:
  /// `write` gets the bytes for the terminal; an empty function shows nothing.
  explicit ResolveProgress(std::function<void(const std::string&)> write);

  /// Shows where the run is, but not more often than an eye can follow. `name` is bytes.
  void show(const ResolveCounts& counts, const std::string& name);
  /// Wipes the line out, for something else to be written.
  void hide();

 private:
  std::function<void(const std::string&)> m_write;
  std::size_t m_width = 0;  ///< Columns of the line that is shown.
  std::chrono::steady_clock::time_point m_next;
};

}  // namespace quiver_tool
