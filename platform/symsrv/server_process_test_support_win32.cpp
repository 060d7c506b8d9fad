// Programs of Windows start no servers of the machine that runs them.

#include "symsrv/download_fixture_test_support.h"

namespace symsrv_1_0::internal {

std::unique_ptr<LoopbackServer> startLoopbackServer(const std::string&) {
  return nullptr;
}

}  // namespace symsrv_1_0::internal
