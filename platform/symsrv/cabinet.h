// Compressed symbol files: cabinets with exactly one file in them.
//
// What is stored as its name does not matter, and what is said of its size is a claim: bytes are
// counted as they come, and too many end it.

#pragma once

#include <cstdint>
#include <string>

#include "symsrv/byte_source.h"

namespace symsrv_1_0::internal {

/// Returns the reason when the file could not be expanded completely, an empty text otherwise. An
/// exception of the sink passes through.
std::string expandCabinet(IByteSource& cabinet, std::uint64_t limit, IByteSink& to);

/// The part of each system. The header has been checked, and `to` counts.
std::string expandCheckedCabinet(IByteSource& cabinet, IByteSink& to);

}  // namespace symsrv_1_0::internal
