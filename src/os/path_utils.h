// Paths are split, joined and compared here and nowhere else: thin wrappers over the file library's
// `Filename`, so that the whole library reads a path the same way.
//
// Functions of text; none keeps state, none fails: what cannot be used yields an empty string or
// false. A null path counts as empty.
//
//   function                          input                       result
//   fileNameOf                        C:\x\a.dll                  a.dll
//   baseNameOf                        C:\x\a.dll                  a
//   extensionOf                       C:\x\a.dll                  .dll
//   directoryOf                       C:\x\a.dll                  C:\x\      (with its separator)
//   parentDirectory                   C:\bin\                     C:\        (empty above the root)
//   dropFirstDirectory                C:\build\src\a.cpp          build\src\a.cpp
//   searchName                        C:\build\src\a.cpp          build\src\a.cpp
//   searchName                        src\a.cpp                   src\a.cpp
//   joinPath                          D:\arch, a.dll              D:\arch\a.dll
//   joinPath                          D:\arch, C:\a.dll           C:\a.dll
//   replaceExtension                  C:\bin\app.exe, .pdb        C:\bin\app.pdb
//   stripTrailingSeparators           C:\dir\\                    C:\dir

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace QV_2_9 {

/// Returns true for null and for "".
bool isEmpty(const wchar_t* text);

/// Returns a negative, zero or positive value; letters compare as lower case.
int compareIgnoreCase(const wchar_t* a, const wchar_t* b);

/// Returns the path made absolute against the current directory, then canonical. `isDirectory`: the
/// whole text is a directory.
std::wstring toCanonicalAbsolutePath(const wchar_t* path, bool isDirectory);
std::wstring toAbsolutePath(const wchar_t* path);

std::wstring fileNameOf(const wchar_t* path);
std::wstring baseNameOf(const wchar_t* path);
std::wstring extensionOf(const wchar_t* path);
std::wstring directoryOf(const wchar_t* path);
std::wstring parentDirectory(const wchar_t* path);
std::wstring dropFirstDirectory(const wchar_t* path);

/// Returns a relative name as it is, an absolute one without its drive or root.
std::wstring searchName(const wchar_t* path);

/// Returns `name` made absolute against the directory `base`; an absolute name comes back as it is.
std::wstring joinPath(const wchar_t* base, const wchar_t* name);

/// Returns the directory `path` with `dir` as its innermost directory.
std::wstring appendDirectory(const std::wstring& path, const std::wstring& dir);
std::wstring replaceFileName(const wchar_t* path, const wchar_t* name);
std::wstring replaceExtension(const wchar_t* path, const wchar_t* extension);

/// A text made only of separators comes back unchanged.
std::wstring stripTrailingSeparators(const wchar_t* path);
std::wstring toUpperCase(const std::wstring& text);

/// Splits at every separator but a last character: "a;b;" gives "a" and "b;". Empty elements are
/// kept, an empty text gives none.
void splitString(const wchar_t* text, wchar_t separator, std::vector<std::wstring>& out);

/// Returns the variable's value, empty when it is unset.
std::wstring getEnvironmentVariable(const wchar_t* name);

/// Returns the login name of the current user, "unknown_user" when the system does not tell.
std::wstring getUserName();

/// Returns true for a regular file that can be opened for reading.
bool isReadable(const wchar_t* path);

namespace internal {

/// A hash under which paths that `compareIgnoreCase` calls equal meet.
std::size_t hashIgnoreCase(const wchar_t* text);

/// What the system says of a path, in the widths that recorded results use.
struct FileStatus {
  bool isDirectory = false;
  std::int64_t modificationTime = 0;  ///< Seconds since 1970-01-01 UTC; negative before.
  std::int64_t size =
      0;  ///< The low 32 bits of the size, sign-extended. Intended: recorded sizes are.
};

/// Returns true when something bears the name, links being followed.
bool exists(const wchar_t* path);

/// Returns false, and an all-zero status, for a path that cannot be examined. Trailing separators
/// are ignored.
bool fileStatus(const wchar_t* path, FileStatus& status);

}  // namespace internal
}  // namespace QV_2_9
