// What a path leads to.

#pragma once

#include <windows.h>
#include <string>

namespace PAKU_3_1::internal {

/// Follows links. Returns 0 or a system error code. `path` is a native one.
int statusOf(const std::wstring& path, WIN32_FILE_ATTRIBUTE_DATA& status);

inline bool isDirectory(const WIN32_FILE_ATTRIBUTE_DATA& status) {
  return (status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace PAKU_3_1::internal
