// Reading directories, and reaching what lies deep below one.

#pragma once

#include <cstddef>
#include <dirent.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <vector>

#include "paku/directory_tree.h"
#include "paku/file_descriptor_posix.h"
#include "paku/uninterrupted_posix.h"

namespace PAKU_3_1::internal {

/// Opens the directory `below` under `start` for reading, "" being `start` itself. The path may be
/// longer than a system call takes. `followLink`: the last component may be a link.
FileDescriptor openDirectoryBelow(int start, std::string_view below, bool followLink);

/// Returns what `below` leads to from `start`, links being followed.
EntryKind kindBelow(int start, std::string_view below);

/// Fills in what the system says of `below` itself, also when it is a link. Returns false, with
/// `errno` set, when there is no such thing.
bool statusBelow(int start, std::string_view below, struct stat& status);

/// Returns the entries of the directory `below` under `start` that differ from `name` in letter
/// case at most, in ascending order.
std::vector<std::string> entriesCalled(int start, std::string_view below, const std::string& name);

/// Calls `use(name, type)` for each entry of an open directory, "." and ".." left out; `type` is
/// the DT_ value that the file system gives. Returns false, with `errno` set, for a directory that
/// cannot be read to its end.
template <class Use>
bool forEachEntry(int fd, const Use& use) {
  alignas(dirent64) char buffer[32 * 1024];
  for (;;) {
    const ssize_t filled = uninterrupted([&] { return getdents64(fd, buffer, sizeof buffer); });
    if (filled <= 0)
      return filled == 0;
    for (ssize_t at = 0; at < filled;) {
      const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
      const std::string_view name(entry->d_name);
      if (name != "." && name != "..")
        use(name, entry->d_type);
      at += entry->d_reclen;
    }
  }
}

}  // namespace PAKU_3_1::internal
