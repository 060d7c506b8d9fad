// One directory, one level.

#include "paku/file_handle_win32.h"
#include "paku/file_ops.h"
#include "paku/file_status_win32.h"
#include "paku/native_path_win32.h"
#include "paku/no_dialogs.h"

namespace PAKU_3_1 {

int createDirectory(const Filename& directory) {
  const NoDialogs noDialogs;
  std::wstring path;
  if (!internal::nativePath(directory.text().text(), path))
    return ERROR_INVALID_NAME;
  if (CreateDirectoryW(path.c_str(), nullptr))
    return 0;
  const int error = internal::lastError();
  WIN32_FILE_ATTRIBUTE_DATA status = {};
  const bool isThere = internal::statusOf(path, status) == 0 && internal::isDirectory(status);
  return isThere ? 0 : error;
}

}  // namespace PAKU_3_1
