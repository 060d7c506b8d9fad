// What a name is looked for as.
//
// A name loses its root and is tidied; what remains and each of its tails is looked for, the
// longest first. Nothing outside a searched directory is ever named: leading ".." go as well.
//
//   name                        system    tails
//   C:\work\proj\x.cpp          any       work/proj/x.cpp, proj/x.cpp, x.cpp
//   /build/../src/a.cpp         any       src/a.cpp, a.cpp
//   ..\a.dll                    Windows   a.dll
//   src\a.cpp                   POSIX     "src\a.cpp" as one name, src/a.cpp, a.cpp
//   dir\                        any       none: that is no file

#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "paku/path_style.h"

namespace PAKU_3_1::internal {

/// Components, outermost first; the last is the file name. Never empty.
using Tail = std::span<const std::wstring>;

/// Holds the components that its tails look at.
class SearchName final {
 public:
  /// `systemStyle`: how the file system that is searched reads a path. Where '\' is an ordinary
  /// character a relative name with one in it is looked for as it is written before '\' is taken
  /// for a separator.
  SearchName(std::wstring_view name, PathStyle systemStyle);

  SearchName(const SearchName&) = delete;
  SearchName& operator=(const SearchName&) = delete;

  const std::vector<Tail>& tails() const { return m_tails; }

 private:
  std::vector<std::wstring> m_asWritten;
  std::vector<std::wstring> m_components;
  std::vector<Tail> m_tails;
};

}  // namespace PAKU_3_1::internal
