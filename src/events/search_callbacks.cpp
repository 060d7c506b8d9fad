// The lock of each callback class. They are defined here, and not where callbacks are derived, so
// that there is one of each in the process.

#include "quiver/search_callbacks.h"

#include "core/lock.h"

namespace QV_2_9 {
namespace {

QVSpinSharedLock searchStartedLock;
QVSpinSharedLock filesFoundLock;
QVSpinSharedLock noFilesFoundLock;
QVSpinSharedLock confidenceLevelPolicyLock;

}  // namespace

ISpinSharedLock* SearchStartedEventGenerator::getLock() {
  return &searchStartedLock;
}

ISpinSharedLock* FilesFoundEventGenerator::getLock() {
  return &filesFoundLock;
}

ISpinSharedLock* NoFilesFoundEventGenerator::getLock() {
  return &noFilesFoundLock;
}

ISpinSharedLock* ConfidenceLevelPolicyEventGenerator::getLock() {
  return &confidenceLevelPolicyLock;
}

}  // namespace QV_2_9
