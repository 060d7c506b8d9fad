// Path functions as thin wrappers over the file library.

#include "os/path_utils.h"

#include "paku/environment.h"
#include "paku/file.h"
#include "paku/file_info.h"
#include "paku/filename.h"

#include "os/letter_case.h"

namespace QV_2_9 {
namespace {

using PAKU_3_1::FileInfo;
using PAKU_3_1::Filename;
using PAKU_3_1::String;
using PAKU_3_1::StringList;

const wchar_t* orEmpty(const wchar_t* text) {
  return text ? text : L"";
}

bool isSeparator(wchar_t character) {
  return character == L'\\' || character == L'/';
}

Filename filenameOf(const wchar_t* path, bool isDirectory = false) {
  return Filename(String(path), 0, isDirectory);
}

Filename absolute(const wchar_t* path, bool isDirectory) {
  return filenameOf(path, isDirectory).toAbsoluteFilename(Filename());
}

}  // namespace

bool isEmpty(const wchar_t* text) {
  return !text || !*text;
}

int compareIgnoreCase(const wchar_t* a, const wchar_t* b) {
  const wchar_t* left = orEmpty(a);
  const wchar_t* right = orEmpty(b);
  for (; *left; ++left, ++right) {
    if (internal::lowerCaseOf(*left) != internal::lowerCaseOf(*right))
      break;
  }
  const wchar_t x = internal::lowerCaseOf(*left);
  const wchar_t y = internal::lowerCaseOf(*right);
  return x < y ? -1 : x > y;
}

std::wstring toCanonicalAbsolutePath(const wchar_t* path, bool isDirectory) {
  return absolute(path, isDirectory).canonical().text().text();
}

std::wstring toAbsolutePath(const wchar_t* path) {
  return absolute(path, false).text().text();
}

std::wstring fileNameOf(const wchar_t* path) {
  return filenameOf(path).baseWithExtension().text();
}

std::wstring baseNameOf(const wchar_t* path) {
  return filenameOf(path).baseWithoutExtension().text();
}

std::wstring extensionOf(const wchar_t* path) {
  return filenameOf(path).extension().text();
}

std::wstring directoryOf(const wchar_t* path) {
  return filenameOf(path).path().text();
}

std::wstring parentDirectory(const wchar_t* path) {
  StringList directories = filenameOf(path).directories();
  if (directories.isEmpty())
    return {};
  directories.removeTail();
  Filename parent;
  parent.setDirectories(directories);
  return parent.text().text();
}

std::wstring dropFirstDirectory(const wchar_t* path) {
  const Filename filename = filenameOf(path);
  StringList directories = filename.directories();
  if (directories.isEmpty())
    return {};
  directories.removeHead();
  Filename rest;
  rest.setDirectories(directories);
  rest.setBaseWithExtension(filename.baseWithExtension());
  return rest.text().text();
}

std::wstring searchName(const wchar_t* path) {
  return filenameOf(path).isAbsolute() ? dropFirstDirectory(path) : orEmpty(path);
}

std::wstring joinPath(const wchar_t* base, const wchar_t* name) {
  return filenameOf(name).toAbsoluteFilename(filenameOf(base)).text().text();
}

std::wstring appendDirectory(const std::wstring& path, const std::wstring& dir) {
  Filename filename = filenameOf(path.c_str(), true);
  StringList directories = filename.directories();
  directories.append(String(dir.c_str()));
  filename.setDirectories(directories);
  return filename.text().text();
}

std::wstring replaceFileName(const wchar_t* path, const wchar_t* name) {
  Filename filename = filenameOf(path);
  filename.setBaseWithExtension(String(name));
  return filename.text().text();
}

std::wstring replaceExtension(const wchar_t* path, const wchar_t* extension) {
  Filename filename = filenameOf(path);
  filename.setExtension(String(extension));
  return filename.text().text();
}

std::wstring stripTrailingSeparators(const wchar_t* path) {
  const std::wstring text = orEmpty(path);
  std::size_t length = text.size();
  while (length > 0 && isSeparator(text[length - 1])) --length;
  return length == 0 ? text : text.substr(0, length);
}

std::wstring toUpperCase(const std::wstring& text) {
  std::wstring upper = text;
  for (wchar_t& letter : upper) letter = internal::upperCaseOf(letter);
  return upper;
}

void splitString(const wchar_t* text, wchar_t separator, std::vector<std::wstring>& out) {
  out.clear();
  if (isEmpty(text))
    return;
  const wchar_t* begin = text;
  const wchar_t* end = text;
  // Intended: a separator at the very end belongs to the last element.
  for (; end[1]; ++end) {
    if (*end != separator)
      continue;
    out.emplace_back(begin, end);
    begin = end + 1;
  }
  out.emplace_back(begin, end + 1);
}

std::wstring getEnvironmentVariable(const wchar_t* name) {
  return PAKU_3_1::environmentValue(orEmpty(name));
}

bool isReadable(const wchar_t* path) {
  return PAKU_3_1::readability(filenameOf(path)) == PAKU_3_1::Readability::kReadable;
}

namespace internal {

std::size_t hashIgnoreCase(const wchar_t* text) {
  // FNV-1a, in the width at hand.
  std::uint64_t hash = 14695981039346656037u;
  for (const wchar_t* letter = orEmpty(text); *letter; ++letter)
    hash = (hash ^ static_cast<std::uint64_t>(lowerCaseOf(*letter))) * 1099511628211u;
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

bool exists(const wchar_t* path) {
  FileInfo info;
  return PAKU_3_1::fileInfo(filenameOf(path), 0, info) == 0;
}

bool fileStatus(const wchar_t* path, FileStatus& status) {
  status = FileStatus();
  FileInfo info;
  if (PAKU_3_1::fileInfo(filenameOf(path), 0, info) != 0)
    return false;
  status.isDirectory = info.isDirectory;
  status.modificationTime = info.modificationTime;
  status.size = static_cast<std::int32_t>(static_cast<std::uint32_t>(info.size));
  return true;
}

}  // namespace internal
}  // namespace QV_2_9
