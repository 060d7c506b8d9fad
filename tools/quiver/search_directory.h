// The argument of --dir: [KIND:]PATH[,recursive][,high].
//
//   argument                   kind         path              flags
//   /s                         the sought   /s                none
//   sym:/s,high                symbols      /s                high
//   all:/s,recursive,high      every kind   /s                recursive, high
//   /a,b                       the sought   /a,b              none
//   /a,high,                   the sought   /a,high           none        (an empty word ends the
//   path) /a,high,,recursive         the sought   /a,high           recursive
//   ./sym:x                    the sought   ./sym:x           none

#pragma once

#include <functional>
#include <string>

#include "quiver/search_dirs.h"

namespace quiver_tool {

struct SearchDirectory {
  QV_2_9::search_category_t category = QV_2_9::scAllFiles;
  std::wstring path;
  bool isRecursive = false;
  bool isHighPriority = false;
};

/// Returns true when files of this kind are looked for in `dir`.
bool serves(const SearchDirectory& dir, QV_2_9::search_category_t category);

using IsDirectory = std::function<bool(const std::wstring& path)>;

/// Reads one argument; without a kind the directory is filed under `sought`. Throws `UsageError`
/// for an empty path, and for a last word that is no flag but was meant as one: the text up to its
/// comma names a directory or the word looks like a flag, while the whole text names no directory.
SearchDirectory parseSearchDirectory(const std::wstring& argument,
                                     QV_2_9::search_category_t sought,
                                     const IsDirectory& isDirectory);

}  // namespace quiver_tool
