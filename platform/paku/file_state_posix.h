// The state of a file as the system's own structure tells it.

#pragma once

#include <sys/stat.h>

#include "paku/file_state.h"

namespace PAKU_3_1::internal {

FileState stateOf(const struct stat& status);

}  // namespace PAKU_3_1::internal
