// Hands out the routines of this system, or what a test put in their place.

#include "os/os_specific_routines.h"

namespace QV_2_9 {
namespace {

IOSSpecificRoutines* g_routinesForTest = nullptr;

}  // namespace

IOSSpecificRoutines* getOSSpecificRoutines() {
  return g_routinesForTest ? g_routinesForTest : &internal::systemRoutines();
}

namespace internal {

void setOSSpecificRoutinesForTest(IOSSpecificRoutines* routines) {
  g_routinesForTest = routines;
}

}  // namespace internal
}  // namespace QV_2_9
