// The one routines object of a system that is not Windows.

#include "os/linux_specific_routines.h"

namespace QV_2_9::internal {
namespace {

LinuxSpecificRoutines g_routines;

}  // namespace

IOSSpecificRoutines& systemRoutines() {
  return g_routines;
}

}  // namespace QV_2_9::internal
