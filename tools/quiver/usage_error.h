// A mistake in the user's arguments.

#pragma once

#include <stdexcept>

namespace quiver_tool {

/// The text is UTF-8 and says what is wrong and, where it can, what to write instead.
class UsageError final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace quiver_tool
