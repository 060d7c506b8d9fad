// Opening what must be a regular file.

#include "paku/regular_file_posix.h"

#include <cerrno>
#include <fcntl.h>

#include "paku/uninterrupted_posix.h"

namespace PAKU_3_1::internal {
namespace {

int refusal(mode_t mode) {
  if (S_ISREG(mode))
    return 0;
  return S_ISDIR(mode) ? EISDIR : EINVAL;
}

}  // namespace

int openRegularFile(const std::string& path, FileDescriptor& file, struct stat& status) {
  if (stat(path.c_str(), &status) != 0)
    return errno;
  if (const int refused = refusal(status.st_mode))
    return refused;
  // Another thing may bear the name by now: it must not block, and it is looked at again.
  FileDescriptor opened(uninterrupted(
      [&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY); }));
  if (!opened || fstat(opened.get(), &status) != 0)
    return errno;
  if (const int refused = refusal(status.st_mode))
    return refused;
  file = std::move(opened);
  return 0;
}

}  // namespace PAKU_3_1::internal
