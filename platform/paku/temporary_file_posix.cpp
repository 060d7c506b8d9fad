// Everything happens relative to the directory's descriptor, so that a directory that is renamed
// meanwhile gets the file all the same and no part of it lands elsewhere.

#include "paku/temporary_file_posix.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "paku/temporary_name.h"
#include "paku/uninterrupted_posix.h"

namespace PAKU_3_1::internal {
namespace {

constexpr int kAttempts = 100;

std::string uniqueName() {
  static std::atomic<unsigned> counter{0};
  return temporaryName(static_cast<unsigned long>(getpid()), counter++);
}

int moveWithoutReplacing(int directory, const char* from, const char* to) {
  if (renameat2(directory, from, directory, to, RENAME_NOREPLACE) == 0)
    return 0;
  if (errno != EINVAL && errno != ENOSYS)
    return errno;
  // A file system without that kind of rename: a second link fails for an existing name as well.
  if (linkat(directory, from, directory, to, 0) != 0)
    return errno;
  unlinkat(directory, from, 0);
  return 0;
}

}  // namespace

TemporaryFile::TemporaryFile(const std::string& target) : m_error(open(target)) {}

TemporaryFile::~TemporaryFile() {
  if (!m_name.empty())
    unlinkat(m_directory.get(), m_name.c_str(), 0);
}

int TemporaryFile::open(const std::string& target) {
  const std::size_t slash = target.rfind('/');
  const bool isBare = slash == std::string::npos;
  m_targetName = isBare ? target : target.substr(slash + 1);
  if (m_targetName.empty() || m_targetName == "." || m_targetName == "..")
    return EISDIR;
  if (const int error = openDirectory(isBare ? "." : target.substr(0, slash + 1)))
    return error;
  return createFile();
}

int TemporaryFile::openDirectory(const std::string& path) {
  // One that may be written but not read can still be written through.
  for (const int access : {O_RDONLY, O_PATH}) {
    m_directory = FileDescriptor(
        uninterrupted([&] { return ::open(path.c_str(), access | O_DIRECTORY | O_CLOEXEC); }));
    if (m_directory)
      return 0;
  }
  return errno;
}

int TemporaryFile::createFile() {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::string name = uniqueName();
    m_file = FileDescriptor(uninterrupted([&] {
      return openat(m_directory.get(),
                    name.c_str(),
                    O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                    0600);
    }));
    if (m_file) {
      m_name = std::move(name);
      return 0;
    }
    if (errno != EEXIST)
      break;
  }
  return errno;
}

int TemporaryFile::targetRefusal(bool overwrite) const {
  struct stat status {};
  if (fstatat(m_directory.get(), m_targetName.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
    return errno == ENOENT ? 0 : errno;
  if (!overwrite)
    return EEXIST;
  if (S_ISDIR(status.st_mode))
    return EISDIR;
  return S_ISREG(status.st_mode) || S_ISLNK(status.st_mode) ? 0 : EINVAL;
}

int TemporaryFile::publish(bool overwrite) {
  if (const int refused = targetRefusal(overwrite))
    return refused;
  const int directory = m_directory.get();
  if (!overwrite) {
    if (const int error = moveWithoutReplacing(directory, m_name.c_str(), m_targetName.c_str()))
      return error;
  } else if (renameat(directory, m_name.c_str(), directory, m_targetName.c_str()) != 0) {
    return errno;
  }
  m_name.clear();
  // The file is there; only a power failure could still take its name away.
  uninterrupted([&] { return fsync(directory); });
  return 0;
}

}  // namespace PAKU_3_1::internal
