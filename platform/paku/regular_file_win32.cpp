// Files on disks; a directory is not opened without asking for it.

#include "paku/regular_file_win32.h"

#include "paku/no_dialogs.h"

namespace PAKU_3_1::internal {

int openRegularFile(const std::wstring& path, FileHandle& file) {
  const NoDialogs noDialogs;
  FileHandle opened(CreateFileW(path.c_str(),
                                GENERIC_READ,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr,
                                OPEN_EXISTING,
                                FILE_FLAG_SEQUENTIAL_SCAN,
                                nullptr));
  if (!opened)
    return lastError();
  if (GetFileType(opened.get()) != FILE_TYPE_DISK)
    return ERROR_BAD_FILE_TYPE;
  file = std::move(opened);
  return 0;
}

}  // namespace PAKU_3_1::internal
