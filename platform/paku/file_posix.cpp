// Regular files through their descriptors.

#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "paku/file.h"
#include "paku/file_state_posix.h"
#include "paku/md5.h"
#include "paku/md5_memo.h"
#include "paku/native_path_posix.h"
#include "paku/regular_file_posix.h"
#include "paku/trusted_file_system_posix.h"
#include "paku/uninterrupted_posix.h"

namespace PAKU_3_1 {
namespace {

using internal::uninterrupted;

constexpr std::size_t kChunk = std::size_t{256} * 1024;

ssize_t readAt(int fd, std::vector<char>& buffer, off_t offset) {
  return uninterrupted([&] { return pread(fd, buffer.data(), buffer.size(), offset); });
}

/// Nothing where it does not tell of every change.
std::optional<FileState> stateOf(int fd) {
  struct stat status {};
  if (!internal::datesAllContent(fd) || fstat(fd, &status) != 0)
    return std::nullopt;
  return internal::stateOf(status);
}

std::wstring md5Of(int fd) {
  internal::Md5 md5;
  std::vector<char> buffer(kChunk);
  off_t offset = 0;
  while (const ssize_t count = readAt(fd, buffer, offset)) {
    if (count < 0)
      return {};
    md5.add(buffer.data(), static_cast<std::size_t>(count));
    offset += count;
  }
  return md5.finish();
}

}  // namespace

File::File(const Filename& filename) {
  std::string path;
  internal::FileDescriptor file;
  struct stat status {};
  const bool isPath = internal::nativePath(filename.text().text(), path);
  m_status = isPath ? internal::openRegularFile(path, file, status) : ENOENT;
  m_handle = file.release();
}

File::~File() {
  if (m_handle >= 0)
    close(static_cast<int>(m_handle));
}

String File::md5checksum() {
  if (m_status != 0)
    return {};
  const int fd = static_cast<int>(m_handle);
  return internal::rememberedMd5([fd] { return stateOf(fd); }, [fd] { return md5Of(fd); });
}

Readability readability(const Filename& filename) {
  std::string path;
  if (!internal::nativePath(filename.text().text(), path))
    return Readability::kMissing;
  internal::FileDescriptor file;
  struct stat status {};
  if (internal::openRegularFile(path, file, status) == 0)
    return Readability::kReadable;
  if (S_ISDIR(status.st_mode))
    return Readability::kDirectory;
  return status.st_mode == 0 ? Readability::kMissing : Readability::kUnreadable;
}

FileModifiable::FileModifiable(const Filename& filename, bool writable) {
  std::string path;
  struct stat status {};
  if (!writable || !internal::nativePath(filename.text().text(), path) ||
      stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_mode & S_IWUSR)
    return;
  // A failure shows when the file is written.
  static_cast<void>(chmod(path.c_str(), (status.st_mode & 07777) | S_IWUSR));
}

}  // namespace PAKU_3_1
