// States of files through stat.

#include "paku/file_state_posix.h"

#include <string>

#include "paku/native_path_posix.h"

namespace PAKU_3_1 {
namespace {

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

FileState internal::stateOf(const struct stat& status) {
  return {status.st_dev,
          status.st_ino,
          static_cast<std::uint64_t>(status.st_size),
          nanoseconds(status.st_mtim),
          nanoseconds(status.st_ctim)};
}

std::optional<FileState> fileState(const Filename& filename) {
  std::string path;
  struct stat status {};
  if (!internal::nativePath(filename.text().text(), path) || stat(path.c_str(), &status) != 0)
    return std::nullopt;
  return internal::stateOf(status);
}

}  // namespace PAKU_3_1
