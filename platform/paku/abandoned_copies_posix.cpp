// Goes by the time of the last change of any kind: the time of the content is that of what is
// copied, from a moment before the copy gets its name.

#include <cstdint>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "paku/directory_entries_posix.h"
#include "paku/file_descriptor_posix.h"
#include "paku/file_ops.h"
#include "paku/native_path_posix.h"
#include "paku/temporary_name.h"

namespace PAKU_3_1 {
namespace {

bool isAbandoned(int directory, const std::string& name, std::int64_t now) {
  struct stat status {};
  return fstatat(directory, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISREG(status.st_mode) && now - status.st_ctim.tv_sec > kCopyIsAbandonedAfter;
}

}  // namespace

void removeAbandonedCopies(const Filename& target, std::int64_t now) {
  std::string path;
  if (!internal::nativePath(target.text().text(), path))
    return;
  const std::size_t name = path.rfind('/') + 1;  // 0 when there is no slash
  const std::string own = path.substr(name);
  const std::string parent = name == 0 ? "." : path.substr(0, name);
  const internal::FileDescriptor directory(
      open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory)
    return;
  std::vector<std::string> copies;
  internal::forEachEntry(directory.get(), [&](std::string_view entry, unsigned char) {
    if (entry != own && internal::isTemporaryName(entry))
      copies.emplace_back(entry);
  });
  for (const std::string& copy : copies) {
    if (isAbandoned(directory.get(), copy, now))
      unlinkat(directory.get(), copy.c_str(), 0);
  }
}

}  // namespace PAKU_3_1
