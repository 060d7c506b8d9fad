// What the system says of the call that failed last on this thread.

#pragma once

#include <string>

namespace quiver_tool {

/// One line of UTF-8.
std::string systemErrorText();

}  // namespace quiver_tool
