// Opening a searched directory.

#pragma once

#include "paku/file_handle_win32.h"
#include "paku/searched_directory.h"

namespace PAKU_3_1::internal {

/// Opens what the path leads to with all sharing, so that nobody is kept from renaming or deleting.
FileHandle openDirectory(const std::wstring& path, DWORD access, DWORD flags);

/// Returns false for what is no directory.
bool identityOf(HANDLE directory, FileIdentity& identity);

}  // namespace PAKU_3_1::internal
