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
  std::vector<std::wstring> components = componentsBelowRoot(name, style);
  std::size_t kept = 0;
  for (std::wstring& component : components) {
    if (component == L"..")
      kept -= kept > 0 ? 1 : 0;
    else if (component != L"." && &component != &components[kept++])
      components[kept - 1] = std::move(component);
  }
  components.resize(kept);
  return components;
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

  m_tails.reserve(m_asWritten.size() + m_components.size());
  // Tails without a backslash are the same in both readings.
  for (Tail tail = m_asWritten; std::ranges::any_of(tail, hasBackslash); tail = tail.subspan(1))
    m_tails.push_back(tail);
  for (Tail tail = m_components; !tail.empty(); tail = tail.subspan(1)) m_tails.push_back(tail);
}

}  // namespace PAKU_3_1::internal
