// One directory, one level.

#include <cerrno>
#include <string>
#include <sys/stat.h>

#include "paku/file_ops.h"
#include "paku/native_path_posix.h"

namespace PAKU_3_1 {

int createDirectory(const Filename& directory) {
  std::string path;
  if (!internal::nativePath(directory.text().text(), path))
    return ENOENT;
  if (mkdir(path.c_str(), 0777) == 0)
    return 0;
  const int error = errno;
  struct stat status {};
  const bool isThere = stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
  return isThere ? 0 : error;
}

}  // namespace PAKU_3_1
