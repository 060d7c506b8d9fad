// The state of an open file.

#pragma once

#include <windows.h>
#include <optional>

#include "paku/file_state.h"

namespace PAKU_3_1::internal {

/// Nothing when the file system does not tell.
std::optional<FileState> stateOf(HANDLE file);

}  // namespace PAKU_3_1::internal
