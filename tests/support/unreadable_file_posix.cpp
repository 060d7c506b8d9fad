// Named pipes by mkfifo: opening one would wait for a writer.

#include <cerrno>
#include <sys/stat.h>
#include <system_error>

#include "support/unreadable_file.h"

namespace quiver_test {

UnreadableFile::UnreadableFile(const std::filesystem::path& path) {
  if (mkfifo(path.c_str(), 0600) != 0)
    throw std::system_error(errno, std::generic_category(), path.string());
}

UnreadableFile::~UnreadableFile() = default;

// Written out: clang counts a defaulted one as no use of the handle.
UnreadableFile::UnreadableFile(UnreadableFile&& other) noexcept : m_handle(other.m_handle) {}

}  // namespace quiver_test
