// Reads /proc.

#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "load/process_state.h"

namespace quiver_load {

std::size_t residentBytes() {
  std::size_t size = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

Descriptors openDescriptors() {
  Descriptors open;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    const std::string target = std::filesystem::read_symlink(entry.path(), error).string();
    if (target == "anon_inode:inotify")
      ++open.noticeQueues;
    else if (target.ends_with("/mountinfo"))
      ++open.mountTables;
    else
      open.others.push_back(target);
  }
  return open;
}

}  // namespace quiver_load
