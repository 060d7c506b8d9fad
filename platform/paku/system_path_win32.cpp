// Windows paths: drives have current directories, and names end before their last dots and blanks.

#include <algorithm>
#include <string_view>

#include "paku/canonical_path.h"
#include "paku/native_path_win32.h"
#include "paku/path_syntax.h"
#include "paku/system_path.h"

namespace PAKU_3_1::internal {
namespace {

bool isLetter(wchar_t c) {
  return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

bool isDriveRelative(const std::wstring& text) {
  return text.size() > 2 && isLetter(text[0]) && text[1] == L':' &&
         !isSeparator(text[2], PathStyle::kWindows);
}

/// The component without what the system takes off its end; "." and ".." are none.
std::wstring_view trimmed(std::wstring_view component) {
  const std::size_t last = component.find_last_not_of(L". ");
  return last == std::wstring_view::npos ? component : component.substr(0, last + 1);
}

}  // namespace

std::wstring withoutDriveDirectory(std::wstring text) {
  if (!isDriveRelative(text))
    return text;
  std::wstring full = text.size() <= kLongestPath ? fullPath(text) : std::wstring();
  return full.empty() ? text : full;
}

std::wstring canonicalSystemPath(const std::wstring& text, PathStyle style) {
  const std::wstring canonical = canonicalPath(text, style);
  if (canonical.starts_with(L"\\\\?\\"))
    return canonical;
  const std::size_t root = rootLength(canonical, style);
  std::wstring result = canonical.substr(0, root);
  for (std::size_t at = root; at < canonical.size();) {
    const std::size_t end = std::min(canonical.find(L'\\', at), canonical.size());
    result += trimmed(std::wstring_view(canonical).substr(at, end - at));
    if (end < canonical.size())
      result += L'\\';
    at = end + 1;
  }
  return result;
}

}  // namespace PAKU_3_1::internal
