// Directories that stand in front of paths, recorded on one machine and looked for on another.
//
//   recorded                     found                     mapped prefixes
//   /build/agent/work/src/a.cpp  /home/u/proj/src/a.cpp    /build/agent/work -> /home/u/proj
//   C:\ci\src\A.CPP              /home/u/src/a.cpp         C:\ci -> /home/u
//   C:\ci\SRC\a.cpp              /home/u/src/a.cpp         C:\ci\SRC -> /home/u/src
//   C:\ci\SRC\a.cpp              D:\u\src\a.cpp            C:\ci -> D:\u
//   \\srv\share\src\a.cpp        D:\src\a.cpp              \\srv\share -> the root of D:
//   src/a.cpp                    /home/u/src/a.cpp         (relative names) -> /home/u
//
// Functions of text; none keeps state or asks the file system.

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace QV_2_9::internal {

/// A path taken apart: "." and doubled separators are gone, ".." has been worked out.
struct SplitPath {
  bool isWindows = false;
  std::wstring root;  ///< "/", "C:", "\\srv\share", "\", or empty for a relative path.
  std::vector<std::wstring> names;
};

/// Splits a path as the system that recorded it reads it.
SplitPath splitRecordedPath(const wchar_t* path);

/// Splits a path as this system reads it.
SplitPath splitLocalPath(const wchar_t* path);

/// Returns the text, without a separator at its end except behind a root.
std::wstring toText(const SplitPath& path);

/// Letter case does not count when either path is one of Windows.
bool isSamePrefix(const SplitPath& a, const SplitPath& b);

struct MappedPrefixes {
  SplitPath recorded;
  SplitPath local;
};

/// Returns what stands in front of the longest common end, in whole names. Nothing when no name is
/// common or when the paths are the same. Letter case of directories counts where the local system
/// looks at it: behind the prefixes names are taken as they were recorded. That of the file's own
/// name does not when it was recorded on Windows, since it says little of the other files.
std::optional<MappedPrefixes> prefixesOfCommonEnd(const SplitPath& recorded,
                                                  const SplitPath& local);

/// Returns where a recorded path lies on this machine; empty when it is not below the recorded
/// prefix.
std::wstring mappedPath(const MappedPrefixes& prefixes, const SplitPath& recorded);

}  // namespace QV_2_9::internal
