// Copies by the kernel where it can, which shares the blocks on file systems that know how.

#include <cerrno>
#include <cstddef>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "paku/file_ops.h"
#include "paku/file_state_posix.h"
#include "paku/native_path_posix.h"
#include "paku/regular_file_posix.h"
#include "paku/temporary_file_posix.h"
#include "paku/uninterrupted_posix.h"

namespace PAKU_3_1 {
namespace {

constexpr std::size_t kChunk = std::size_t{256} * 1024;
constexpr std::size_t kKernelChunk = std::size_t{1} << 30;

int writeAll(int fd, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = internal::uninterrupted([&] { return write(fd, bytes, count); });
    if (written < 0)
      return errno;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return 0;
}

/// Copies from the current positions to the source's end.
int copyByHand(int from, int to) {
  std::vector<char> buffer(kChunk);
  for (;;) {
    const ssize_t count =
        internal::uninterrupted([&] { return read(from, buffer.data(), buffer.size()); });
    if (count == 0)
      return 0;
    if (count < 0)
      return errno;
    if (const int error = writeAll(to, buffer.data(), static_cast<std::size_t>(count)))
      return error;
  }
}

bool isUnsupported(int error) {
  return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP ||
         error == EPERM;
}

int copyContent(int from, int to) {
  for (;;) {
    const ssize_t count = internal::uninterrupted(
        [&] { return copy_file_range(from, nullptr, to, nullptr, kKernelChunk, 0); });
    // At the end of what the kernel copies, reading has the last word: files that the kernel makes
    // up have a size of zero and content all the same.
    if (count == 0 || (count < 0 && isUnsupported(errno)))
      return copyByHand(from, to);
    if (count < 0)
      return errno;
  }
}

/// Gives the copy the mode and the times of the source and sends it to the disk.
int finishCopy(int fd, const struct stat& source) {
  const timespec times[] = {source.st_atim, source.st_mtim};
  // Some file systems have no modes; a copy there is as good as any.
  static_cast<void>(fchmod(fd, (source.st_mode & 0777) | S_IWUSR));
  if (futimens(fd, times) != 0)
    return errno;
  // Invalid means: nothing to sync here.
  const bool cannotSync =
      internal::uninterrupted([&] { return fsync(fd); }) != 0 && errno != EINVAL;
  return cannotSync ? errno : 0;
}

bool isInState(int fd, const FileState& expected) {
  struct stat status {};
  return fstat(fd, &status) == 0 && internal::stateOf(status) == expected;
}

}  // namespace

int copyFile(const Filename& from, const Filename& to, bool overwrite, const FileState* expected) {
  std::string source;
  std::string target;
  if (!internal::nativePath(from.text().text(), source) ||
      !internal::nativePath(to.text().text(), target))
    return ENOENT;
  internal::FileDescriptor file;
  struct stat status {};
  if (const int error = internal::openRegularFile(source, file, status))
    return error;
  if (expected && internal::stateOf(status) != *expected)
    return kFileHasChanged;
  internal::TemporaryFile copy(target);
  if (copy.error())
    return copy.error();
  if (const int error = copyContent(file.get(), copy.fd()))
    return error;
  if (expected && !isInState(file.get(), *expected))
    return kFileHasChanged;
  if (const int error = finishCopy(copy.fd(), status))
    return error;
  return copy.publish(overwrite);
}

}  // namespace PAKU_3_1
