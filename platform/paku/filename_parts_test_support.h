// What callers make of the parts of a file name.

#pragma once

#include <string>
#include <vector>

#include "paku/filename.h"

namespace PAKU_3_1::internal {

inline std::wstring withoutFirstDirectory(const wchar_t* path) {
  const Filename name(path);
  StringList directories = name.directories();
  if (directories.isEmpty())
    return {};
  directories.removeHead();
  Filename rest;
  rest.setDirectories(directories);
  rest.setBaseWithExtension(name.baseWithExtension());
  return rest.text().text();
}

inline std::wstring parentOf(const wchar_t* path) {
  StringList directories = Filename(path).directories();
  directories.removeTail();
  Filename parent;
  parent.setDirectories(directories);
  return parent.text().text();
}

/// The directories from a file's own up to the root.
inline std::vector<std::wstring> walkUp(const wchar_t* path) {
  std::vector<std::wstring> visited;
  std::wstring directory = Filename(path).path().text();
  while (!directory.empty()) {
    visited.push_back(directory);
    directory = parentOf(directory.c_str());
  }
  return visited;
}

inline std::wstring joined(const wchar_t* base, const wchar_t* name) {
  return Filename(name).toAbsoluteFilename(Filename(base)).text().text();
}

}  // namespace PAKU_3_1::internal
