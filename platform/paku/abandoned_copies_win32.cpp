// Goes by the latest of a file's times: that of the content is the copied file's, some file systems
// keep no time of the last change, and others none of the file's beginning.

#include <windows.h>
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "paku/directory_listing_win32.h"
#include "paku/file_handle_win32.h"
#include "paku/file_ops.h"
#include "paku/file_times_win32.h"
#include "paku/native_path_win32.h"
#include "paku/temporary_name.h"

namespace PAKU_3_1 {
namespace {

bool isAbandoned(const std::wstring& path, std::int64_t now) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  constexpr DWORD kNoCopy = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
  const internal::FileHandle file(CreateFileW(path.c_str(),
                                              FILE_READ_ATTRIBUTES,
                                              kShared,
                                              nullptr,
                                              OPEN_EXISTING,
                                              FILE_FLAG_OPEN_REPARSE_POINT,
                                              nullptr));
  FILE_BASIC_INFO info = {};
  if (!file || !GetFileInformationByHandleEx(file.get(), FileBasicInfo, &info, sizeof info) ||
      (info.FileAttributes & kNoCopy) != 0)
    return false;
  const std::int64_t last =
      std::max({info.ChangeTime.QuadPart, info.LastWriteTime.QuadPart, info.CreationTime.QuadPart});
  return now - internal::secondsSince1970(last) > kCopyIsAbandonedAfter;
}

}  // namespace

void removeAbandonedCopies(const Filename& target, std::int64_t now) {
  std::wstring path;
  if (!internal::extendedPath(target.text().text(), path))
    return;
  const std::size_t name = path.rfind(L'\\') + 1;
  const std::wstring own = path.substr(name);
  const std::wstring parent = path.substr(0, name);
  std::vector<std::wstring> copies;
  {
    internal::Listing listing(parent + L"*");
    for (bool isEntry = listing.isOpen(); isEntry; isEntry = listing.next()) {
      const std::wstring entry = listing.entry().cFileName;
      if (entry != own && internal::isTemporaryName<wchar_t>(entry))
        copies.push_back(parent + entry);
    }
  }
  for (const std::wstring& copy : copies) {
    if (isAbandoned(copy, now))
      DeleteFileW(copy.c_str());
  }
}

}  // namespace PAKU_3_1
