// File information through stat.

#include <cerrno>
#include <string>
#include <sys/stat.h>

#include "paku/file_info.h"
#include "paku/native_path_posix.h"

namespace PAKU_3_1 {

int fileInfo(const Filename& filename, int /*flags*/, FileInfo& info) {
  std::string path;
  if (!internal::nativePath(filename.text().text(), path))
    return ENOENT;
  struct stat status {};
  if (stat(path.c_str(), &status) != 0)
    return errno;
  info.isDirectory = S_ISDIR(status.st_mode);
  info.isRegular = S_ISREG(status.st_mode);
  info.size = static_cast<std::uint64_t>(status.st_size);
  info.modificationTime = status.st_mtim.tv_sec;  // the nanoseconds only ever add
  return 0;
}

}  // namespace PAKU_3_1
