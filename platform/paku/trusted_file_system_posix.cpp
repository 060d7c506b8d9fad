// File systems by their magic numbers; mounts by the kernel's table.

#include "paku/trusted_file_system_posix.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fstream>
#include <linux/fs.h>
#include <linux/magic.h>
#include <span>
#include <sstream>
#include <string>
#include <sys/ioctl.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "paku/uninterrupted_posix.h"

namespace PAKU_3_1::internal {
namespace {

constexpr unsigned long kXfs = 0x58465342;
constexpr unsigned long kBcachefs = 0xca451a4e;

// ext2 to ext4 share a number.
constexpr unsigned long kOnDisks[] = {
    EXT4_SUPER_MAGIC, kXfs, BTRFS_SUPER_MAGIC, F2FS_SUPER_MAGIC, kBcachefs};

// Directories of an overlay are watched as the overlay shows them, and what lies below an overlay
// must not change while it is mounted.
constexpr unsigned long kElsewhere[] = {TMPFS_MAGIC, RAMFS_MAGIC, OVERLAYFS_SUPER_MAGIC};

/// Returns 0 when it is not known.
unsigned long fileSystemOf(int fd) {
  struct statfs status {};
  const bool isKnown = uninterrupted([&] { return fstatfs(fd, &status); }) == 0;
  return isKnown ? static_cast<unsigned long>(status.f_type) : 0;
}

bool isAmong(std::span<const unsigned long> fileSystems, unsigned long fileSystem) {
  return std::ranges::find(fileSystems, fileSystem) != fileSystems.end();
}

/// The table writes blanks and backslashes as octal numbers.
std::string unescaped(const std::string& text) {
  constexpr std::size_t kDigits = 3;
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + kDigits >= text.size()) {
      plain += text[i];
      continue;
    }
    plain += static_cast<char>(std::stoi(text.substr(i + 1, kDigits), nullptr, 8));
    i += kDigits;
  }
  return plain;
}

/// Empty when it is not known.
std::string pathOf(int directory) {
  char link[32];
  std::snprintf(link, sizeof link, "/proc/self/fd/%d", directory);
  char path[PATH_MAX];
  const ssize_t length = readlink(link, path, sizeof path);
  if (length <= 0 || static_cast<std::size_t>(length) == sizeof path || path[0] != '/')
    return {};
  return {path, static_cast<std::size_t>(length)};
}

}  // namespace

bool notifiesOfChanges(int directory) {
  const unsigned long fileSystem = fileSystemOf(directory);
  return isAmong(kOnDisks, fileSystem) || isAmong(kElsewhere, fileSystem);
}

bool datesAllContent(int file) {
  return isAmong(kOnDisks, fileSystemOf(file));
}

bool hasMountBelow(int directory) try {
  const std::string path = pathOf(directory);
  std::ifstream table("/proc/self/mountinfo");
  if (path.empty() || !table)
    return true;
  // Else reading without memory looks like the end of the table.
  table.exceptions(std::ios::badbit);
  const std::string prefix = path == "/" ? path : path + '/';
  for (std::string line; std::getline(table, line);) {
    std::istringstream fields(line);
    fields.exceptions(std::ios::badbit);
    std::string number, parent, device, root, point;
    fields >> number >> parent >> device >> root >> point;
    if (const std::string plain = unescaped(point); plain != "/" && plain.starts_with(prefix))
      return true;
  }
  return false;
} catch (const std::ios_base::failure&) {
  return true;  // the rest of the table is not known
}

bool ignoresCase(int directory) {
  int flags = 0;
  return ioctl(directory, FS_IOC_GETFLAGS, &flags) == 0 && (flags & FS_CASEFOLD_FL) != 0;
}

}  // namespace PAKU_3_1::internal
