// Text for a debugger that watches this process.

#pragma once

#include <string>

namespace vesk_1_8 {

/// Shows one line, given as UTF-8 without its end. Does nothing on systems without such a channel.
void showInDebugger(const std::string& line);

}  // namespace vesk_1_8
