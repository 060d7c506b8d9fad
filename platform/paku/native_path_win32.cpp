// From a caller's text to the system's own form of it.

#include "paku/native_path_win32.h"

#include <windows.h>

#include "paku/path_syntax.h"

namespace PAKU_3_1::internal {
namespace {

constexpr std::wstring_view kExtended = L"\\\\?\\";
constexpr std::wstring_view kExtendedShare = L"\\\\?\\UNC\\";
constexpr std::wstring_view kDevice = L"\\\\.\\";

// A directory may be no longer than this without the prefix: a short name must fit below it.
constexpr std::size_t kLongPath = 248;

constexpr auto kStyle = PathStyle::kWindows;

void stripSeparators(std::wstring& path) {
  const std::size_t root = rootLength(path, kStyle);
  while (path.size() > root + 1 && isSeparator(path.back(), kStyle)) path.pop_back();
}

bool beginsWith(std::wstring_view text, std::wstring_view head) {
  return text.size() >= head.size() && CompareStringOrdinal(text.data(),
                                                            static_cast<int>(head.size()),
                                                            head.data(),
                                                            static_cast<int>(head.size()),
                                                            TRUE) == CSTR_EQUAL;
}

std::wstring withPrefix(const std::wstring& full) {
  if (full.starts_with(kExtended))
    return full;
  if (full.starts_with(L"\\\\"))
    return std::wstring(kExtendedShare).append(full, 2);
  return std::wstring(kExtended) + full;
}

/// A drive or a share alone stands for its root, not for a directory that is current there.
std::wstring withRoot(std::wstring_view text) {
  std::wstring path(text);
  if (!text.empty() && rootLength(text, kStyle) == text.size())
    path += L'\\';
  return path;
}

/// Behind the prefix there are also devices, pipes and whole disks, which open like files.
bool isOnVolume(std::wstring_view full) {
  if (!full.starts_with(kExtended))
    return !full.starts_with(kDevice);
  const std::wstring_view volume = full.substr(kExtended.size());
  const bool isDrive = volume.size() > 2 && volume[1] == L':' && volume[2] == L'\\';
  return isDrive || beginsWith(volume, L"UNC\\") || beginsWith(volume, L"Volume{");
}

/// Makes the path absolute; false for what names no file.
bool absolutePath(std::wstring_view text, std::wstring& full) {
  if (text.empty() || text.size() > kLongestPath || text.find(L'\0') != std::wstring_view::npos)
    return false;
  const std::size_t root = rootLength(text, kStyle);
  if (!canBeName(text.substr(root)))
    return false;
  const std::wstring rooted = withRoot(text);
  full = rooted.starts_with(kExtended) ? rooted : fullPath(rooted);
  stripSeparators(full);
  return !full.empty() && isOnVolume(full) && withPrefix(full).size() <= kLongestPath;
}

}  // namespace

std::wstring fullPath(const std::wstring& text) {
  std::wstring full(MAX_PATH, L'\0');
  for (;;) {
    const DWORD size = static_cast<DWORD>(full.size());
    const DWORD length = GetFullPathNameW(text.c_str(), size, full.data(), nullptr);
    full.resize(length);
    if (length < size)
      return full;
  }
}

bool canBeName(std::wstring_view below) {
  return below.find_first_of(std::wstring_view(L"*?<>|\":\0", 8)) == std::wstring_view::npos;
}

bool nativePath(std::wstring_view text, std::wstring& native) {
  std::wstring full;
  if (!absolutePath(text, full))
    return false;
  native = full.size() < kLongPath ? full : withPrefix(full);
  return true;
}

bool extendedPath(std::wstring_view text, std::wstring& native) {
  std::wstring full;
  if (!absolutePath(text, full))
    return false;
  native = withPrefix(full);
  return true;
}

}  // namespace PAKU_3_1::internal
