// How a path is read: which characters separate its components and what its root looks like.
//
// A path recorded on one system is often looked at on another, so a style belongs to a text rather
// than to the machine. Only the two functions named after the system depend on it.

#pragma once

#include <string_view>

namespace PAKU_3_1 {

enum class PathStyle {
  kPosix,    ///< '/' separates; a backslash is a character like any other.
  kWindows,  ///< '\' and '/' separate; '\' is written.
};

namespace internal {

/// Returns the style in which this system's own calls read a path.
PathStyle systemPathStyle();

/// Returns the style in which a text is split on this system.
PathStyle defaultPathStyle(std::wstring_view text);

/// Returns the style that a text looks like on a system where '\' is an ordinary character: Windows
/// for "C:\", "C:/" and "\" at the beginning and for a text that has '\' but no '/'.
PathStyle styleOfRecordedPath(std::wstring_view text);

constexpr wchar_t separatorOf(PathStyle style) {
  return style == PathStyle::kWindows ? L'\\' : L'/';
}

constexpr bool isSeparator(wchar_t c, PathStyle style) {
  return c == L'/' || (c == L'\\' && style == PathStyle::kWindows);
}

}  // namespace internal
}  // namespace PAKU_3_1
