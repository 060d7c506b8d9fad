// File information from the attributes that the file system keeps.

#include <windows.h>

#include "paku/file_info.h"
#include "paku/file_status_win32.h"
#include "paku/file_times_win32.h"
#include "paku/native_path_win32.h"

namespace PAKU_3_1 {
namespace {

std::uint64_t joined(DWORD high, DWORD low) {
  return std::uint64_t{high} << 32 | low;
}

std::int64_t secondsSince1970(const FILETIME& time) {
  return internal::secondsSince1970(
      static_cast<std::int64_t>(joined(time.dwHighDateTime, time.dwLowDateTime)));
}

}  // namespace

int fileInfo(const Filename& filename, int /*flags*/, FileInfo& info) {
  std::wstring path;
  WIN32_FILE_ATTRIBUTE_DATA status = {};
  if (!internal::nativePath(filename.text().text(), path))
    return ERROR_FILE_NOT_FOUND;
  if (const int error = internal::statusOf(path, status))
    return error;
  info.isDirectory = internal::isDirectory(status);
  info.isRegular = !info.isDirectory && !(status.dwFileAttributes & FILE_ATTRIBUTE_DEVICE);
  info.size = joined(status.nFileSizeHigh, status.nFileSizeLow);
  info.modificationTime = secondsSince1970(status.ftLastWriteTime);
  return 0;
}

}  // namespace PAKU_3_1
