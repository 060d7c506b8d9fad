// States of files through their handles: a name does not tell the file's number and second time.

#include "paku/file_state_win32.h"

#include <string>

#include "paku/file_times_win32.h"
#include "paku/native_path_win32.h"
#include "paku/regular_file_win32.h"

namespace PAKU_3_1 {
namespace {

std::uint64_t joined(DWORD high, DWORD low) {
  return std::uint64_t{high} << 32 | low;
}

}  // namespace

std::optional<FileState> internal::stateOf(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION info = {};
  FILE_BASIC_INFO times = {};
  if (!GetFileInformationByHandle(file, &info) ||
      !GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof times))
    return std::nullopt;
  return FileState{info.dwVolumeSerialNumber,
                   joined(info.nFileIndexHigh, info.nFileIndexLow),
                   joined(info.nFileSizeHigh, info.nFileSizeLow),
                   nanosecondsSince1970(times.LastWriteTime.QuadPart),
                   nanosecondsSince1970(times.ChangeTime.QuadPart)};
}

std::optional<FileState> fileState(const Filename& filename) {
  std::wstring path;
  internal::FileHandle file;
  if (!internal::extendedPath(filename.text().text(), path) ||
      internal::openRegularFile(path, file) != 0)
    return std::nullopt;
  return internal::stateOf(file.get());
}

}  // namespace PAKU_3_1
