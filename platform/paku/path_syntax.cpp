// The grammar of paths: where a root ends, where a file name begins.

#include "paku/path_syntax.h"

#include <algorithm>

namespace PAKU_3_1::internal {
namespace {

bool isDriveLetter(wchar_t c) {
  return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

bool beginsWithDrive(std::wstring_view text) {
  return text.size() >= 2 && isDriveLetter(text[0]) && text[1] == L':';
}

std::size_t skipSeparators(std::wstring_view text, std::size_t from, PathStyle style) {
  while (from < text.size() && isSeparator(text[from], style)) ++from;
  return from;
}

std::size_t componentEnd(std::wstring_view text, std::size_t from, PathStyle style) {
  while (from < text.size() && !isSeparator(text[from], style)) ++from;
  return from;
}

/// Returns the end of the component behind `from`, or `from` itself when none follows.
std::size_t nextComponentEnd(std::wstring_view text, std::size_t from) {
  const std::size_t start = skipSeparators(text, from, PathStyle::kWindows);
  return start == text.size() ? from : componentEnd(text, start, PathStyle::kWindows);
}

bool isUnc(std::wstring_view component) {
  return component.size() == 3 && (component[0] | 0x20) == L'u' && (component[1] | 0x20) == L'n' &&
         (component[2] | 0x20) == L'c';
}

/// The root of "\\?\C:\x" or "\\.\device": the prefix and what it opens, which for UNC is a share.
std::size_t deviceRootLength(std::wstring_view text) {
  constexpr std::size_t kPrefix = 3;
  const std::size_t start = skipSeparators(text, kPrefix, PathStyle::kWindows);
  const std::size_t end = nextComponentEnd(text, kPrefix);
  if (end == kPrefix || !isUnc(text.substr(start, end - start)))
    return end;
  return nextComponentEnd(text, nextComponentEnd(text, end));
}

std::size_t windowsRootLength(std::wstring_view text) {
  constexpr auto kStyle = PathStyle::kWindows;
  if (beginsWithDrive(text) && (text.size() == 2 || isSeparator(text[2], kStyle)))
    return 2;
  if (text.size() < 3 || skipSeparators(text, 0, kStyle) != 2)
    return 0;
  const std::size_t serverEnd = componentEnd(text, 2, kStyle);
  const bool isDevice = serverEnd == 3 && (text[2] == L'?' || text[2] == L'.');
  return isDevice ? deviceRootLength(text) : nextComponentEnd(text, serverEnd);
}

bool isDots(std::wstring_view component) {
  return component == L"." || component == L"..";
}

}  // namespace

PathStyle styleOfRecordedPath(std::wstring_view text) {
  if (text.starts_with(L'\\'))
    return PathStyle::kWindows;
  if (text.size() > 2 && beginsWithDrive(text) && isSeparator(text[2], PathStyle::kWindows))
    return PathStyle::kWindows;
  const bool onlyBackslashes =
      text.find(L'\\') != std::wstring_view::npos && text.find(L'/') == std::wstring_view::npos;
  return onlyBackslashes ? PathStyle::kWindows : PathStyle::kPosix;
}

std::size_t rootLength(std::wstring_view text, PathStyle style) {
  if (style == PathStyle::kWindows)
    return windowsRootLength(text);
  return text.starts_with(L'/') ? 1 : 0;
}

std::size_t fileNameStart(std::wstring_view text, PathStyle style, bool isDirectory) {
  if (isDirectory)
    return text.size();
  std::size_t start = text.size();
  while (start > 0 && !isSeparator(text[start - 1], style)) --start;
  start = std::max(start, rootLength(text, style));
  return isDots(text.substr(start)) ? text.size() : start;
}

std::wstring directoryText(std::wstring_view text, PathStyle style, bool isDirectory) {
  std::wstring directory(text.substr(0, fileNameStart(text, style, isDirectory)));
  if (!directory.empty() && !isSeparator(directory.back(), style))
    directory += separatorOf(style);
  return directory;
}

std::vector<std::wstring> componentsBelowRoot(std::wstring_view text, PathStyle style) {
  std::vector<std::wstring> components;
  components.reserve(2 + static_cast<std::size_t>(std::ranges::count_if(
                             text, [&](wchar_t c) { return isSeparator(c, style); })));
  std::size_t start = skipSeparators(text, rootLength(text, style), style);
  while (start < text.size()) {
    const std::size_t end = componentEnd(text, start, style);
    components.emplace_back(text.substr(start, end - start));
    start = skipSeparators(text, end, style);
  }
  return components;
}

std::vector<std::wstring> directoryComponents(std::wstring_view text,
                                              PathStyle style,
                                              bool isDirectory) {
  const std::wstring_view directory = text.substr(0, fileNameStart(text, style, isDirectory));
  const std::size_t root = rootLength(text, style);
  std::vector<std::wstring> components = componentsBelowRoot(directory, style);
  if (root != 0)
    components.emplace(components.begin(), text.substr(0, root));
  else if (!components.empty() && isSeparator(directory.front(), style))
    components.front().insert(0, 1, directory.front());
  return components;
}

void appendDirectory(std::wstring& text, std::wstring_view component, PathStyle style) {
  text += component;
  if (!component.empty() && !isSeparator(component.back(), style))
    text += separatorOf(style);
}

std::size_t extensionStart(std::wstring_view fileName) {
  const std::size_t dot = fileName.rfind(L'.');
  return dot == std::wstring_view::npos || dot == 0 ? fileName.size() : dot;
}

std::wstring pathUnder(std::wstring_view base, PathStyle baseStyle, std::wstring_view name) {
  if (name.empty())
    return std::wstring(base);
  const bool isRooted =
      baseStyle == PathStyle::kWindows && isSeparator(name.front(), PathStyle::kWindows);
  if (isRooted)
    return std::wstring(base.substr(0, rootLength(base, baseStyle))).append(name);
  std::wstring path;
  appendDirectory(path, base, baseStyle);
  return path.append(name);
}

}  // namespace PAKU_3_1::internal
