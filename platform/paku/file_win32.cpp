// Regular files through their handles.

#include <cstddef>
#include <string>
#include <vector>

#include "paku/file.h"
#include "paku/file_status_win32.h"
#include "paku/md5.h"
#include "paku/native_path_win32.h"
#include "paku/no_dialogs.h"
#include "paku/regular_file_win32.h"

namespace PAKU_3_1 {
namespace {

constexpr std::size_t kChunk = std::size_t{256} * 1024;

HANDLE handleOf(std::intptr_t stored) {
  return reinterpret_cast<HANDLE>(stored);
}

/// Reads at `offset`, whatever was read before. False is an error; the end is a count of 0.
bool readAt(HANDLE file, std::vector<char>& buffer, std::uint64_t offset, DWORD& count) {
  OVERLAPPED place = {};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32);
  count = 0;
  return ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &count, &place) ||
         GetLastError() == ERROR_HANDLE_EOF;
}

std::wstring md5Of(HANDLE file) {
  internal::Md5 md5;
  std::vector<char> buffer(kChunk);
  std::uint64_t offset = 0;
  for (DWORD count = 0;; offset += count) {
    if (!readAt(file, buffer, offset, count))
      return {};
    if (count == 0)
      return md5.finish();
    md5.add(buffer.data(), count);
  }
}

}  // namespace

File::File(const Filename& filename) {
  std::wstring path;
  internal::FileHandle file;
  const bool isPath = internal::nativePath(filename.text().text(), path);
  m_status = isPath ? internal::openRegularFile(path, file) : ERROR_FILE_NOT_FOUND;
  m_handle = reinterpret_cast<std::intptr_t>(file.release());
}

File::~File() {
  if (handleOf(m_handle) != INVALID_HANDLE_VALUE)
    CloseHandle(handleOf(m_handle));
}

String File::md5checksum() {
  if (m_status != 0)
    return {};
  // Never remembered: here the times of a file may stay as they are until its writers close it.
  return md5Of(handleOf(m_handle));
}

Readability readability(const Filename& filename) {
  std::wstring path;
  WIN32_FILE_ATTRIBUTE_DATA status = {};
  if (!internal::nativePath(filename.text().text(), path) || internal::statusOf(path, status) != 0)
    return Readability::kMissing;
  if (internal::isDirectory(status))
    return Readability::kDirectory;
  internal::FileHandle file;
  return internal::openRegularFile(path, file) == 0 ? Readability::kReadable
                                                    : Readability::kUnreadable;
}

FileModifiable::FileModifiable(const Filename& filename, bool writable) {
  std::wstring path;
  if (!writable || !internal::nativePath(filename.text().text(), path))
    return;
  const NoDialogs noDialogs;
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || attributes & FILE_ATTRIBUTE_DIRECTORY ||
      !(attributes & FILE_ATTRIBUTE_READONLY))
    return;
  // A failure shows when the file is written.
  SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
}

}  // namespace PAKU_3_1
