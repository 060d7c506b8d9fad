// Directories are told apart by volume and file number.

#include "paku/searched_directory_win32.h"

#include <utility>

#include "paku/directory_listing_win32.h"
#include "paku/native_path_win32.h"

namespace PAKU_3_1::internal {

FileHandle openDirectory(const std::wstring& path, DWORD access, DWORD flags) {
  const NoDialogs noDialogs;
  return FileHandle(CreateFileW(path.c_str(),
                                access,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr,
                                OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS | flags,
                                nullptr));
}

bool identityOf(HANDLE directory, FileIdentity& identity) {
  BY_HANDLE_FILE_INFORMATION info = {};
  if (!GetFileInformationByHandle(directory, &info) ||
      !(info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
    return false;
  identity.device = info.dwVolumeSerialNumber;
  identity.file = std::uint64_t{info.nFileIndexHigh} << 32 | info.nFileIndexLow;
  return true;
}

std::optional<SearchedDirectory> SearchedDirectory::at(const std::wstring& path) {
  std::wstring native;
  FileIdentity identity;
  if (!extendedPath(path, native))
    return std::nullopt;
  const FileHandle directory = openDirectory(native, FILE_READ_ATTRIBUTES, 0);
  if (!directory || !identityOf(directory.get(), identity))
    return std::nullopt;
  return SearchedDirectory(std::move(native), identity);
}

bool SearchedDirectory::hasFile(const NameString& below) const {
  return kindOfPath(m_path, below) == EntryKind::kFile;
}

std::vector<NameString> SearchedDirectory::entriesCalled(const NameString& below,
                                                         const NameString& name) const {
  std::wstring entry = nameOnDisk(pathBelow(m_path, below), name);
  return entry.empty() ? std::vector<NameString>() : std::vector{std::move(entry)};
}

NameString SearchedDirectory::spelling(const NameString& below, const NameString& name) const {
  const std::wstring entry = nameOnDisk(pathBelow(m_path, below), name);
  return entry.empty() ? name : entry;
}

}  // namespace PAKU_3_1::internal
