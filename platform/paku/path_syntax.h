// The grammar of paths, as functions of text that name the style they read it in.
//
// Nothing here asks the machine, so the rules of either style hold, and are tested, everywhere.
//
//   text                   style    root            directories             file name
//   C:\x\a.dll             Windows  C:              C: x                    a.dll
//   \\srv\share\x\a.dll    Windows  \\srv\share     \\srv\share x           a.dll
//   \\?\C:\x\a.dll         Windows  \\?\C:          \\?\C: x                a.dll
//   \a\b\f.dll             Windows                  \a b                    f.dll
//   /usr/bin/app           POSIX    /               / usr bin               app
//   src/..                 POSIX                    src ..
//
// A lone leading separator of a Windows path is no component: it sticks to the first directory, so
// that dropping the first directory leaves a relative name and dropping the last keeps the text
// rooted.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "paku/path_style.h"

namespace PAKU_3_1::internal {

/// Returns how many characters at the beginning are the drive, the share or the POSIX "/", without
/// the separators behind it. Zero for a relative text.
std::size_t rootLength(std::wstring_view text, PathStyle style);

inline bool isAbsolutePath(std::wstring_view text, PathStyle style) {
  return rootLength(text, style) != 0;
}

/// Returns where the file name begins; the length of the text when there is none. "." and ".." are
/// directories. `isDirectory`: the whole text is one.
std::size_t fileNameStart(std::wstring_view text, PathStyle style, bool isDirectory);

/// Returns the text before the file name, ending with a separator. Empty for a bare name.
std::wstring directoryText(std::wstring_view text, PathStyle style, bool isDirectory);

/// Returns the components of the text before the file name, the root being one of them.
std::vector<std::wstring> directoryComponents(std::wstring_view text,
                                              PathStyle style,
                                              bool isDirectory);

/// Returns the components of `text` behind its root and its leading separators.
std::vector<std::wstring> componentsBelowRoot(std::wstring_view text, PathStyle style);

/// Appends a component and one separator behind it; an empty component adds nothing.
void appendDirectory(std::wstring& text, std::wstring_view component, PathStyle style);

/// Returns where the extension begins, at its dot: the last dot that is not the first character.
/// The length of the name when it has none.
std::size_t extensionStart(std::wstring_view fileName);

/// Returns `name` below the directory `base`. A Windows name with a lone leading separator takes
/// only the drive or share of the base. With either text empty: the other one.
std::wstring pathUnder(std::wstring_view base, PathStyle baseStyle, std::wstring_view name);

}  // namespace PAKU_3_1::internal
