// Directories are told apart by device and inode.

#include "paku/searched_directory_posix.h"

#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

#include "paku/directory_entries_posix.h"
#include "paku/native_path_posix.h"
#include "paku/uninterrupted_posix.h"

namespace PAKU_3_1::internal {
namespace {

FileIdentity identityOf(const struct stat& status) {
  return {status.st_dev, status.st_ino};
}

}  // namespace

FileDescriptor openSearched(const SearchedDirectory& directory) {
  FileDescriptor fd(uninterrupted([&] {
    return open(directory.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
  }));
  struct stat status {};
  const bool isIt =
      fd && fstat(fd.get(), &status) == 0 && identityOf(status) == directory.identity();
  return isIt ? std::move(fd) : FileDescriptor();
}

std::optional<SearchedDirectory> SearchedDirectory::at(const std::wstring& path) {
  std::string native;
  struct stat status {};
  if (!nativePath(path, native) || stat(native.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
    return std::nullopt;
  return SearchedDirectory(std::move(native), identityOf(status));
}

bool SearchedDirectory::hasFile(const NameString& below) const {
  const std::string path = m_path + '/' + below;
  struct stat status {};
  if (path.size() < PATH_MAX)
    return stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
  const FileDescriptor fd = openSearched(*this);
  return fd && kindBelow(fd.get(), below) == EntryKind::kFile;
}

std::vector<NameString> SearchedDirectory::entriesCalled(const NameString& below,
                                                         const NameString& name) const {
  const FileDescriptor fd = openSearched(*this);
  return fd ? internal::entriesCalled(fd.get(), below, name) : std::vector<NameString>();
}

NameString SearchedDirectory::spelling(const NameString& /*below*/, const NameString& name) const {
  return name;
}

}  // namespace PAKU_3_1::internal
