// The status of a path's own entry, or of the link's target, which has to be opened for that.

#include "paku/file_status_win32.h"

#include "paku/file_handle_win32.h"
#include "paku/no_dialogs.h"

namespace PAKU_3_1::internal {
namespace {

int statusOfTarget(const std::wstring& path, WIN32_FILE_ATTRIBUTE_DATA& status) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const FileHandle target(CreateFileW(path.c_str(),
                                      FILE_READ_ATTRIBUTES,
                                      kShared,
                                      nullptr,
                                      OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS,
                                      nullptr));
  BY_HANDLE_FILE_INFORMATION info = {};
  if (!target || !GetFileInformationByHandle(target.get(), &info))
    return lastError();
  status.dwFileAttributes = info.dwFileAttributes;
  status.ftLastWriteTime = info.ftLastWriteTime;
  status.nFileSizeHigh = info.nFileSizeHigh;
  status.nFileSizeLow = info.nFileSizeLow;
  return 0;
}

}  // namespace

int statusOf(const std::wstring& path, WIN32_FILE_ATTRIBUTE_DATA& status) {
  const NoDialogs noDialogs;
  if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &status))
    return lastError();
  const bool isLink = (status.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  return isLink ? statusOfTarget(path, status) : 0;
}

}  // namespace PAKU_3_1::internal
