// The one routines object of Windows.

#include "os/windows_specific_routines.h"

namespace QV_2_9::internal {
namespace {

WindowsSpecificRoutines g_routines(win::windowsSystem());

}  // namespace

IOSSpecificRoutines& systemRoutines() {
  return g_routines;
}

}  // namespace QV_2_9::internal
