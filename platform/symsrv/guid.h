// The 16 bytes that tell one build of a program from every other, as they lie in files.

#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace symsrv_1_0::internal {

using Guid = std::array<std::uint8_t, 16>;

/// Returns 32 upper-case hexadecimal digits. The first three fields are little-endian numbers.
std::string guidDigits(const Guid& guid);

/// Returns the digits with dashes, as people write them.
std::string guidText(const Guid& guid);

}  // namespace symsrv_1_0::internal
