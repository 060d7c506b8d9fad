// Paths relative to an open directory, in pieces that the system takes.

#include "paku/directory_entries_posix.h"

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <sys/stat.h>

#include "paku/name_table_posix.h"
#include "paku/uninterrupted_posix.h"

namespace PAKU_3_1::internal {
namespace {

/// The end of a path and the directory it is relative to.
struct Place {
  FileDescriptor holder;  // of the directory, unless it is the one that the path began in
  int directory;
  std::string path;
};

/// Goes down until the rest of the path is short enough. On failure `directory` is -1.
Place reach(int start, std::string_view below) {
  Place place{FileDescriptor(), start, {}};
  while (below.size() >= PATH_MAX) {
    const std::size_t cut = below.rfind('/', PATH_MAX - 1);
    const std::string piece(below.substr(0, cut));
    if (cut == std::string_view::npos)
      return {FileDescriptor(), -1, {}};
    place.holder = FileDescriptor(uninterrupted(
        [&] { return openat(place.directory, piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
    if (!place.holder)
      return {FileDescriptor(), -1, {}};
    place.directory = place.holder.get();
    below.remove_prefix(cut + 1);
  }
  place.path = below.empty() ? "." : below;
  return place;
}

}  // namespace

FileDescriptor openDirectoryBelow(int start, std::string_view below, bool followLink) {
  const Place place = reach(start, below);
  if (place.directory == -1)
    return {};
  const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | (followLink ? 0 : O_NOFOLLOW);
  return FileDescriptor(
      uninterrupted([&] { return openat(place.directory, place.path.c_str(), flags); }));
}

EntryKind kindBelow(int start, std::string_view below) {
  const Place place = reach(start, below);
  struct stat status {};
  if (place.directory == -1 || fstatat(place.directory, place.path.c_str(), &status, 0) != 0)
    return EntryKind::kNothing;
  return S_ISDIR(status.st_mode) ? EntryKind::kDirectory : EntryKind::kFile;
}

bool statusBelow(int start, std::string_view below, struct stat& status) {
  const Place place = reach(start, below);
  return place.directory != -1 &&
         fstatat(place.directory, place.path.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

std::vector<std::string> entriesCalled(int start, std::string_view below, const std::string& name) {
  const FileDescriptor fd = openDirectoryBelow(start, below, true);
  const auto isCalled = [&](std::string_view entry) {
    return std::ranges::equal(entry, name, {}, foldCase, foldCase);
  };
  std::vector<std::string> found;
  forEachEntry(fd.get(), [&](std::string_view entry, unsigned char) {
    if (isCalled(entry))
      found.emplace_back(entry);
  });
  std::ranges::sort(found);
  return found;
}

}  // namespace PAKU_3_1::internal
