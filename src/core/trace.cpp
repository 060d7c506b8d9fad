// The library's trace channel.

#include "core/trace.h"

namespace QV_2_9::internal {
namespace {

vesk_1_8::LogInfo channel("quiver", "QUIVER_DEBUG");

}  // namespace

vesk_1_8::LogInfo& traceChannel() {
  return channel;
}

}  // namespace QV_2_9::internal
