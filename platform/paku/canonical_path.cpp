// Walks the components of a path from the left and keeps those that remain.

#include "paku/canonical_path.h"

#include <algorithm>
#include <vector>

#include "paku/path_syntax.h"

namespace PAKU_3_1::internal {
namespace {

constexpr int kMaxLinks = 40;  // as many as the system itself follows in one path

/// The root in its canonical spelling with a separator behind it; that separator alone for a text
/// that only begins with one; empty for a relative text.
std::wstring canonicalRoot(std::wstring_view text, PathStyle style) {
  const std::size_t length = rootLength(text, style);
  if (style == PathStyle::kPosix)
    return length ? L"/" : L"";
  if (length == 0)
    return isSeparator(text.front(), style) ? L"\\" : L"";
  std::wstring root;
  for (const wchar_t c : text.substr(0, length)) {
    const wchar_t unified = isSeparator(c, style) ? L'\\' : c;
    if (unified != L'\\' || root.size() < 2 || root.back() != L'\\')
      root += unified;
  }
  return root + L'\\';
}

/// True for an absolute path with nothing to take out of it, as most are. Such paths of the other
/// style are told by nothing so simple.
bool isPlainlyCanonical(std::wstring_view text, PathStyle style) {
  if (style != PathStyle::kPosix || text.size() < 2 || text.front() != L'/')
    return false;
  for (std::size_t begin = 1; begin <= text.size();) {
    const std::size_t end = std::min(text.find(L'/', begin), text.size());
    const std::wstring_view component = text.substr(begin, end - begin);
    if (component.empty() || component == L"." || component == L"..")
      return false;
    begin = end + 1;
  }
  return true;
}

class CanonicalPath final {
 public:
  CanonicalPath(std::wstring_view text, PathStyle style, const LinkReader& readLink)
      : m_style(style), m_readLink(readLink), m_root(canonicalRoot(text, style)) {
    schedule(text);
  }

  std::wstring build() {
    while (!m_pending.empty()) {
      std::wstring component = std::move(m_pending.back());
      m_pending.pop_back();
      if (component == L"..")
        goUp();
      else if (component != L".")
        m_kept.push_back(std::move(component));
    }
    return finished();
  }

 private:
  /// Puts the components of `text` before those that wait already.
  void schedule(std::wstring_view text) {
    std::vector<std::wstring> components = componentsBelowRoot(text, m_style);
    std::move(components.rbegin(), components.rend(), std::back_inserter(m_pending));
  }

  void goUp() {
    if (m_kept.empty() || m_kept.back() == L"..") {
      if (m_root.empty())
        m_kept.emplace_back(L"..");
      return;
    }
    const std::optional<std::wstring> target = linkTarget();
    m_kept.pop_back();
    if (!target)
      return;
    m_pending.emplace_back(L"..");
    schedule(*target);
    if (isAbsolutePath(*target, m_style)) {
      m_root = canonicalRoot(*target, m_style);
      m_kept.clear();
    }
  }

  std::optional<std::wstring> linkTarget() {
    if (!m_readLink || m_links == kMaxLinks)
      return std::nullopt;
    std::optional<std::wstring> target = m_readLink(joined());
    m_links += target ? 1 : 0;
    return target;
  }

  std::wstring joined() const {
    std::wstring text = m_root;
    for (const std::wstring& component : m_kept) {
      if (text.size() > m_root.size())
        text += separatorOf(m_style);
      text += component;
    }
    return text;
  }

  std::wstring finished() const {
    std::wstring text = joined();
    if (text.empty())
      return L".";
    // Without its leading "." such a text would be read as a drive or in the other style.
    const bool isMisread = isAbsolutePath(text, m_style) ||
                           (m_style == PathStyle::kPosix && styleOfRecordedPath(text) != m_style);
    if (m_root.empty() && isMisread)
      text.insert(0, {L'.', separatorOf(m_style)});
    return text;
  }

  const PathStyle m_style;
  const LinkReader& m_readLink;
  std::wstring m_root;
  std::vector<std::wstring> m_kept;
  std::vector<std::wstring> m_pending;  // the next component is the last
  int m_links = 0;
};

}  // namespace

std::wstring canonicalPath(std::wstring_view text, PathStyle style, const LinkReader& readLink) {
  if (text.empty() || isPlainlyCanonical(text, style))
    return std::wstring(text);
  return CanonicalPath(text, style, readLink).build();
}

}  // namespace PAKU_3_1::internal
