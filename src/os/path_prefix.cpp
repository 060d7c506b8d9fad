// See path_prefix.h.

#include "os/path_prefix.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "paku/canonical_path.h"
#include "paku/path_style.h"
#include "paku/path_syntax.h"

#include "os/letter_case.h"

namespace QV_2_9::internal {
namespace {

using PAKU_3_1::PathStyle;

bool isSameText(const std::wstring& a, const std::wstring& b, bool ignoresCase) {
  if (!ignoresCase)
    return a == b;
  return std::ranges::equal(
      a, b, [](wchar_t x, wchar_t y) { return lowerCaseOf(x) == lowerCaseOf(y); });
}

std::wstring rootOf(std::wstring_view text, PathStyle style) {
  std::wstring root(text.substr(0, PAKU_3_1::internal::rootLength(text, style)));
  if (style != PathStyle::kWindows)
    return root;
  std::ranges::replace(root, L'/', L'\\');
  const bool isRootedOnSomeDrive =
      root.empty() && !text.empty() && PAKU_3_1::internal::isSeparator(text.front(), style);
  return isRootedOnSomeDrive ? L"\\" : root;
}

SplitPath split(std::wstring_view path, PathStyle style) {
  if (path.empty())
    return {.isWindows = style == PathStyle::kWindows, .root = {}, .names = {}};
  const std::wstring text = PAKU_3_1::internal::canonicalPath(path, style);
  SplitPath result{style == PathStyle::kWindows,
                   rootOf(text, style),
                   PAKU_3_1::internal::componentsBelowRoot(text, style)};
  std::erase(result.names, L".");
  return result;
}

std::wstring_view orEmpty(const wchar_t* text) {
  return text ? text : L"";
}

// Two characters do not look like a Windows path yet.
bool isDriveAlone(std::wstring_view text) {
  const wchar_t letter = text.empty() ? L'\0' : lowerCaseOf(text.front());
  return text.size() == 2 && text[1] == L':' && letter >= L'a' && letter <= L'z';
}

bool ignoresCase(const SplitPath& a, const SplitPath& b) {
  return a.isWindows || b.isWindows;
}

// A root without a drive is the same in both styles.
bool isSameRoot(const std::wstring& a, const std::wstring& b, bool ignoresCase) {
  const auto isPlain = [](const std::wstring& root) { return root == L"/" || root == L"\\"; };
  return (isPlain(a) && isPlain(b)) || isSameText(a, b, ignoresCase);
}

/// Returns true when `path` has this root and begins with these names.
bool beginsWith(const SplitPath& path, const SplitPath& prefix) {
  const bool folds = ignoresCase(path, prefix);
  return prefix.names.size() <= path.names.size() && isSameRoot(path.root, prefix.root, folds) &&
         std::equal(prefix.names.begin(),
                    prefix.names.end(),
                    path.names.begin(),
                    [folds](const auto& a, const auto& b) { return isSameText(a, b, folds); });
}

/// Returns how many names at the ends are common.
std::size_t commonEnd(const SplitPath& recorded, const SplitPath& local) {
  if (recorded.names.empty() || local.names.empty() ||
      !isSameText(recorded.names.back(), local.names.back(), ignoresCase(recorded, local)))
    return 0;
  const bool folds = local.isWindows;
  const auto differing =
      std::mismatch(recorded.names.rbegin() + 1,
                    recorded.names.rend(),
                    local.names.rbegin() + 1,
                    local.names.rend(),
                    [folds](const auto& a, const auto& b) { return isSameText(a, b, folds); });
  return static_cast<std::size_t>(std::distance(recorded.names.rbegin(), differing.first));
}

SplitPath withoutLast(SplitPath path, std::size_t count) {
  path.names.resize(path.names.size() - count);
  return path;
}

}  // namespace

SplitPath splitRecordedPath(const wchar_t* path) {
  const std::wstring_view text = orEmpty(path);
  if (isDriveAlone(text))
    return {.isWindows = true, .root = std::wstring(text), .names = {}};
  return split(text, PAKU_3_1::internal::styleOfRecordedPath(text));
}

SplitPath splitLocalPath(const wchar_t* path) {
  const std::wstring_view text = orEmpty(path);
  return split(text, PAKU_3_1::internal::defaultPathStyle(text));
}

std::wstring toText(const SplitPath& path) {
  const wchar_t separator = path.isWindows ? L'\\' : L'/';
  std::wstring text = path.root;
  for (const std::wstring& name : path.names) {
    if (!text.empty() && text.back() != separator)
      text += separator;
    text += name;
  }
  // The drive alone would mean its current directory.
  if (path.isWindows && path.names.empty() && text.ends_with(L':'))
    text += separator;
  return text;
}

bool isSamePrefix(const SplitPath& a, const SplitPath& b) {
  return a.names.size() == b.names.size() && beginsWith(a, b);
}

std::optional<MappedPrefixes> prefixesOfCommonEnd(const SplitPath& recorded,
                                                  const SplitPath& local) {
  const std::size_t common = commonEnd(recorded, local);
  if (common == 0)
    return std::nullopt;
  MappedPrefixes prefixes{withoutLast(recorded, common), withoutLast(local, common)};
  if (isSamePrefix(prefixes.recorded, prefixes.local))
    return std::nullopt;
  return prefixes;
}

std::wstring mappedPath(const MappedPrefixes& prefixes, const SplitPath& recorded) {
  const std::size_t size = prefixes.recorded.names.size();
  if (recorded.names.size() <= size || !beginsWith(recorded, prefixes.recorded))
    return {};
  SplitPath path = prefixes.local;
  path.names.insert(path.names.end(),
                    recorded.names.begin() + static_cast<std::ptrdiff_t>(size),
                    recorded.names.end());
  return toText(path);
}

}  // namespace QV_2_9::internal
