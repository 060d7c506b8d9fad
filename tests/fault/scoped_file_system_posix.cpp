// See scoped_file_system.h.

#include <cerrno>
#include <sched.h>
#include <sys/mount.h>
#include <system_error>

#include "fault/scoped_file_system.h"

namespace quiver_test {
namespace {

constexpr unsigned long kNoFlags = 0;
constexpr unsigned long kReadOnly = MS_RDONLY;

std::string mountAlone(const std::filesystem::path& directory, const std::string& options) {
  const bool isMounted = unshare(CLONE_NEWNS) == 0 &&
                         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                         mount("none", directory.c_str(), "tmpfs", kNoFlags, options.c_str()) == 0;
  return isMounted ? "" : "cannot mount: " + std::generic_category().message(errno);
}

bool remount(const std::filesystem::path& directory,
             unsigned long flags,
             const std::string& options) {
  return mount("none", directory.c_str(), "tmpfs", MS_REMOUNT | flags, options.c_str()) == 0;
}

}  // namespace

ScopedFileSystem::ScopedFileSystem(const NativePath& directory, const std::string& options)
    : m_directory(directory.get()), m_refusal(mountAlone(m_directory, options)) {}

ScopedFileSystem::~ScopedFileSystem() {
  if (m_refusal.empty())
    umount2(m_directory.c_str(), MNT_DETACH);
}

bool ScopedFileSystem::setOptions(const std::string& options) {
  return remount(m_directory, kNoFlags, options);
}

bool ScopedFileSystem::setReadOnly(bool readOnly) {
  return remount(m_directory, readOnly ? kReadOnly : kNoFlags, "");
}

}  // namespace quiver_test
