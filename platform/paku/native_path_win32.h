// A path as system calls take it: absolute, and of any length.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace PAKU_3_1::internal {

/// No path is longer than this, whatever its form. Longer ones are not shown to the system, whose
/// own counts they overflow.
constexpr std::size_t kLongestPath = 32767;

/// What the system does to a path before it looks: the current directory or drive in front, "." and
/// ".." applied, blanks and dots at the end taken off. Empty when it will not.
std::wstring fullPath(const std::wstring& text);

/// Returns false for a text that names no file: an empty one, one with a character that only
/// patterns have or that begins the name of a stream, and one that the system takes for a device
/// ("nul", "C:\x\con"). A long path gets the prefix that lifts the limit of its length; separators
/// at the end do not matter.
bool nativePath(std::wstring_view text, std::wstring& native);

/// The same with the prefix on every path, so that names may be appended without limit. Behind it
/// the system takes names as they are: no name is a device.
bool extendedPath(std::wstring_view text, std::wstring& native);

/// Returns false for a relative path below some directory that no file can have.
bool canBeName(std::wstring_view below);

}  // namespace PAKU_3_1::internal
