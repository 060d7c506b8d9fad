// Opening what must be a regular file.

#pragma once

#include <string>

#include "paku/file_handle_win32.h"

namespace PAKU_3_1::internal {

/// Opens for reading and keeps nobody from writing, renaming or deleting the file meanwhile: it may
/// be a running program or a log. Returns 0 or a system error code. `path` is a native one.
int openRegularFile(const std::wstring& path, FileHandle& file);

}  // namespace PAKU_3_1::internal
