// Whether a file is the one that is sought. Nothing leaves a store unseen, not even what this
// module put there itself: caches are shared, and disks fill up.

#pragma once

#include <string>

#include "symsrv/byte_source.h"
#include "symsrv/sought_file.h"

namespace symsrv_1_0::internal {

/// Returns an empty text for the right file, complete; otherwise what speaks against it.
std::string mismatch(IByteSource& file, const SoughtFile& sought);

}  // namespace symsrv_1_0::internal
