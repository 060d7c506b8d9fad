// The number of this process, as the system counts.

#include <windows.h>

#include "symsrv/process_id.h"

namespace symsrv_1_0::internal {

std::uint64_t processId() {
  return GetCurrentProcessId();
}

}  // namespace symsrv_1_0::internal
