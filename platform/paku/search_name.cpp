// From a recorded name to its tails.

#include "paku/search_name.h"

#include <algorithm>
#include <utility>

#include "paku/path_syntax.h"

namespace PAKU_3_1::internal {
namespace {

std::vector<std::wstring> tidyComponents(std::wstring_view name, PathStyle style) {
  if (fileNameStart(name, style, false) == name.size())
    return {};
  std::vector<std::wstring> tidy;
  for (std::wstring& component : componentsBelowRoot(name, style)) {
    if (component != L"." && component != L"..")
      tidy.push_back(std::move(component));
    else if (component == L".." && !tidy.empty())
      tidy.pop_back();
  }
  return tidy;
}

bool hasBackslash(const std::wstring& text) {
  return text.find(L'\\') != std::wstring::npos;
}

}  // namespace

SearchName::SearchName(std::wstring_view name, PathStyle systemStyle) {
  const bool isOnlyWindows = systemStyle == PathStyle::kWindows;
  PathStyle style = isOnlyWindows ? systemStyle : styleOfRecordedPath(name);
  const bool isRelative = !isAbsolutePath(name, style);
  if (!isOnlyWindows && isRelative && name.find(L'\\') != std::wstring_view::npos) {
    m_asWritten = tidyComponents(name, PathStyle::kPosix);
    style = PathStyle::kWindows;
  }
  m_components = tidyComponents(name, style);

  // Tails without a backslash are the same in both readings.
  for (Tail tail = m_asWritten; std::ranges::any_of(tail, hasBackslash); tail = tail.subspan(1))
    m_tails.push_back(tail);
  for (Tail tail = m_components; !tail.empty(); tail = tail.subspan(1)) m_tails.push_back(tail);
}

}  // namespace PAKU_3_1::internal
