// Says what was asked and answered, one line at a time, without secrets.

#pragma once

#include <functional>
#include <string>

namespace symsrv_1_0::internal {

/// Empty when nobody listens. Threads: those of the downloads.
using Report = std::function<void(const std::string& line)>;

}  // namespace symsrv_1_0::internal
