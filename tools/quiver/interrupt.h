// Ctrl-C while something runs that can be given up cleanly.

#pragma once

namespace quiver_tool {

/// While it lives, the first Ctrl-C is noted instead of ending the program; a second one ends it.
/// Watches may be nested, on one thread: what an inner one notes, the outer ones know too.
class InterruptWatch final {
 public:
  InterruptWatch();
  ~InterruptWatch();

  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

  /// Returns true when Ctrl-C was pressed since the outermost watch was made.
  static bool isInterrupted();
};

}  // namespace quiver_tool
