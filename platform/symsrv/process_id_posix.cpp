// The number of this process, as the system counts.

#include <unistd.h>

#include "symsrv/process_id.h"

namespace symsrv_1_0::internal {

std::uint64_t processId() {
  return static_cast<std::uint64_t>(getpid());
}

}  // namespace symsrv_1_0::internal
