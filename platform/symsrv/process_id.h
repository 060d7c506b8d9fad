// The number of this process.

#pragma once

#include <cstdint>

namespace symsrv_1_0::internal {

std::uint64_t processId();

}  // namespace symsrv_1_0::internal
