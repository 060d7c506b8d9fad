// The system's bulk directory call.

#include "paku/directory_listing_win32.h"

#include <algorithm>

#include "paku/file_status_win32.h"
#include "paku/native_path_win32.h"

namespace PAKU_3_1::internal {

Listing::Listing(const std::wstring& pattern) {
  if (pattern.size() <= kLongestPath)
    m_find = FindFirstFileExW(pattern.c_str(),
                              FindExInfoBasic,
                              &m_entry,
                              FindExSearchNameMatch,
                              nullptr,
                              FIND_FIRST_EX_LARGE_FETCH);
}

Listing::~Listing() {
  if (isOpen())
    FindClose(m_find);
}

std::wstring pathBelow(const std::wstring& directory, std::wstring_view below) {
  if (below.empty())
    return directory;
  std::wstring path = directory;
  if (path.back() != L'\\')
    path += L'\\';
  return path.append(below);
}

bool isDots(const wchar_t* name) {
  return std::wstring_view(name) == L"." || std::wstring_view(name) == L"..";
}

bool isLink(const WIN32_FIND_DATAW& entry) {
  if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
    return false;
  return entry.dwReserved0 == 0 || IsReparseTagNameSurrogate(entry.dwReserved0);
}

bool isRealDirectory(const WIN32_FIND_DATAW& entry) {
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && !isLink(entry);
}

EntryKind kindOfPath(const std::wstring& directory, std::wstring_view below) {
  WIN32_FILE_ATTRIBUTE_DATA status = {};
  const bool isPath = canBeName(below) && directory.size() + below.size() < kLongestPath;
  if (!isPath || statusOf(pathBelow(directory, below), status) != 0)
    return EntryKind::kNothing;
  return isDirectory(status) ? EntryKind::kDirectory : EntryKind::kFile;
}

std::wstring nameOnDisk(const std::wstring& directory, std::wstring_view below) {
  if (below.empty() || !canBeName(below))
    return {};
  const Listing listing(pathBelow(directory, below));
  return listing.isOpen() ? listing.entry().cFileName : std::wstring();
}

std::wstring pathOnDisk(const std::wstring& directory, const std::wstring& below) {
  std::wstring spelled;
  for (std::size_t at = 0; at < below.size();) {
    const std::size_t end = std::min(below.find(L'\\', at), below.size());
    const std::wstring name = nameOnDisk(directory, std::wstring_view(below).substr(0, end));
    appendEntry(spelled, name.empty() ? below.substr(at, end - at) : name);
    at = end + 1;
  }
  return spelled;
}

}  // namespace PAKU_3_1::internal
