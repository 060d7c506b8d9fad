// Files through descriptors: folders are walked one by one, so that no link that appears meanwhile
// leads elsewhere.

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

#include "paku/file_descriptor_posix.h"
#include "paku/uninterrupted_posix.h"
#include "symsrv/files.h"

namespace symsrv_1_0::internal {
namespace {

using PAKU_3_1::internal::FileDescriptor;
using PAKU_3_1::internal::uninterrupted;

int descriptor(std::intptr_t handle) {
  return static_cast<int>(handle);
}

bool readAt(int fd, std::uint64_t offset, void* to, std::size_t count) {
  char* next = static_cast<char*>(to);
  while (count > 0) {
    const ssize_t got =
        uninterrupted([&] { return pread(fd, next, count, static_cast<off_t>(offset)); });
    if (got <= 0)
      return false;
    next += got;
    offset += static_cast<std::uint64_t>(got);
    count -= static_cast<std::size_t>(got);
  }
  return true;
}

std::unique_ptr<FileSource> openAt(int folder, const std::string& name, Links links) {
  if (name.empty() || name.find('\0') != std::string::npos)
    return nullptr;
  const int noLink = links == Links::kRefuse ? O_NOFOLLOW : 0;
  // Without waiting: the name may be that of a pipe.
  const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | noLink;
  FileDescriptor fd(uninterrupted([&] { return openat(folder, name.c_str(), flags); }));
  struct stat status {};
  if (!fd || fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode))
    return nullptr;
  auto source = std::make_unique<FileSource>(fd.get(), static_cast<std::uint64_t>(status.st_size));
  fd.release();
  return source;
}

/// Makes the folder with all that lead to it.
void makeAll(const std::string& path, mode_t mode) {
  for (std::size_t slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
    mkdir(path.substr(0, slash).c_str(), mode);
    if (slash == std::string::npos)
      return;
  }
}

}  // namespace

std::unique_ptr<FileSource> FileSource::open(const std::string& path, Links links) {
  return openAt(AT_FDCWD, path, links);
}

FileSource::~FileSource() {
  close(descriptor(m_handle));
}

bool FileSource::read(std::uint64_t offset, void* to, std::size_t count) {
  return offset <= m_size && count <= m_size - offset &&
         readAt(descriptor(m_handle), offset, to, count);
}

NewFile::NewFile(std::shared_ptr<Folder> folder, std::string name, std::intptr_t handle)
    : m_folder(std::move(folder)), m_name(std::move(name)), m_handle(handle) {}

NewFile::~NewFile() {
  if (m_handle >= 0)
    close(descriptor(m_handle));
  if (!m_name.empty())
    m_folder->remove(m_name);
}

bool NewFile::read(std::uint64_t offset, void* to, std::size_t count) {
  if (offset > m_size || count > m_size - offset)
    return false;
  const bool isRead = readAt(descriptor(m_handle), offset, to, count);
  m_isUnreadable = m_isUnreadable || !isRead;
  return isRead;
}

bool NewFile::write(const void* bytes, std::size_t count) {
  const char* next = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t put = uninterrupted(
        [&] { return pwrite(descriptor(m_handle), next, count, static_cast<off_t>(m_size)); });
    if (put <= 0)
      return false;
    next += put;
    m_size += static_cast<std::uint64_t>(put);
    count -= static_cast<std::size_t>(put);
  }
  return true;
}

bool NewFile::clear() {
  m_size = 0;
  return uninterrupted([this] { return ftruncate(descriptor(m_handle), 0); }) == 0;
}

bool NewFile::publish(const std::string& name) {
  const int folder = descriptor(m_folder->m_handle);
  const bool isFlushed =
      uninterrupted([this] { return fsync(descriptor(m_handle)); }) == 0 || errno == EINVAL;
  if (!isFlushed || renameat(folder, m_name.c_str(), folder, name.c_str()) != 0)
    return false;
  m_name.clear();
  return true;
}

std::shared_ptr<Folder> Folder::open(const std::string& root,
                                     const std::vector<std::string>& names,
                                     Missing missing,
                                     Links links,
                                     Access access) {
  if (root.empty() || root.find('\0') != std::string::npos)
    return nullptr;
  const mode_t mode = access == Access::kPrivate ? 0700 : 0777;
  if (missing == Missing::kMake)
    makeAll(root, mode);
  const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
  FileDescriptor fd(uninterrupted([&] { return ::open(root.c_str(), flags); }));
  std::string path = root;
  const int noLink = links == Links::kRefuse ? O_NOFOLLOW : 0;
  for (const std::string& name : names) {
    if (!fd)
      return nullptr;
    if (missing == Missing::kMake)
      mkdirat(fd.get(), name.c_str(), mode);
    fd = FileDescriptor(
        uninterrupted([&] { return openat(fd.get(), name.c_str(), flags | noLink); }));
    path += (path.back() == '/' ? "" : "/") + name;
  }
  if (!fd)
    return nullptr;
  auto folder = std::make_shared<Folder>(std::move(path), fd.get(), access);
  fd.release();
  return folder;
}

void Folder::removeEmpty(const std::string& root, std::vector<std::string> names) {
  while (!names.empty()) {
    const std::string last = std::move(names.back());
    names.pop_back();
    const auto parent = open(root, names, Missing::kRefuse, Links::kRefuse);
    if (!parent || unlinkat(descriptor(parent->m_handle), last.c_str(), AT_REMOVEDIR) != 0)
      return;
  }
}

Folder::~Folder() {
  close(descriptor(m_handle));
}

std::string Folder::pathOf(const std::string& name) const {
  return m_path + (m_path.back() == '/' ? "" : "/") + name;
}

std::unique_ptr<FileSource> Folder::read(const std::string& name, Links links) const {
  return openAt(descriptor(m_handle), name, links);
}

bool Folder::remove(const std::string& name) const {
  return unlinkat(descriptor(m_handle), name.c_str(), 0) == 0;
}

std::unique_ptr<NewFile> Folder::create(const std::string& name) {
  // Before the file: who has no memory for it afterwards would leave it behind.
  auto file = std::make_unique<NewFile>(shared_from_this(), temporaryName(name), -1);
  file->m_handle = uninterrupted([&] {
    return openat(descriptor(m_handle),
                  file->m_name.c_str(),
                  O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                  m_access == Access::kPrivate ? 0600 : 0666);
  });
  if (file->m_handle >= 0)
    return file;
  file->m_name.clear();
  return nullptr;
}

bool isAbsolutePath(const std::string& path) {
  return !path.empty() && path.front() == '/';
}

std::string reasonNotPrivate(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0)
    return errno == ENOENT ? "" : "cannot be looked at";
  if (S_ISLNK(status.st_mode))
    return "is a link";
  if (!S_ISDIR(status.st_mode))
    return "is no directory";
  if (status.st_uid != geteuid())
    return "belongs to somebody else";
  return (status.st_mode & 022) == 0 ? "" : "others may write there";
}

std::filesystem::path standardPath(const std::string& path) {
  return path;
}

std::vector<std::string> pathsIn(const std::string& folder) {
  errno = 0;
  const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), &closedir);
  if (!open && errno == ENOMEM)
    throw std::bad_alloc();
  std::vector<std::string> paths;
  while (const dirent* entry = open ? readdir(open.get()) : nullptr) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..")
      paths.push_back(folder + (folder.back() == '/' ? "" : "/") + name);
  }
  return paths;
}

std::string fileNameOf(const std::filesystem::path& path) {
  return path.filename().string();
}

}  // namespace symsrv_1_0::internal
