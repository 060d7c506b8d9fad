// Reading directories into the index, and the changes that the kernel tells of.

#include "paku/watched_directories_posix.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

#include "paku/directory_entries_posix.h"
#include "paku/open_ancestors_posix.h"
#include "paku/searched_directory_posix.h"
#include "paku/trusted_file_system_posix.h"

namespace PAKU_3_1::internal {
namespace {

constexpr int kNoWatch = -1;

/// True when a directory is gone or closed to us: a walk passes it by, and so does the index.
bool isPassedBy(int error) {
  return error == EACCES || error == EPERM || error == ENOENT || error == ENOTDIR || error == ELOOP;
}

NameIndex::Kind kindOfType(unsigned char type) {
  if (type == DT_DIR)
    return NameIndex::Kind::kDirectory;
  return type == DT_LNK ? NameIndex::Kind::kLink : NameIndex::Kind::kFile;
}

NameIndex::Kind kindOfMode(mode_t mode) {
  if (S_ISDIR(mode))
    return NameIndex::Kind::kDirectory;
  return S_ISLNK(mode) ? NameIndex::Kind::kLink : NameIndex::Kind::kFile;
}

bool tellsOfAllChanges(int directory, bool isTree) {
  return notifiesOfChanges(directory) && !(isTree && hasMountBelow(directory));
}

}  // namespace

bool canBeKnown(const SearchedDirectory& directory, bool isTree) {
  const FileDescriptor fd = openSearched(directory);
  return fd && tellsOfAllChanges(fd.get(), isTree);
}

std::unique_ptr<IKnownDirectories> makeKnownDirectories(bool isTree, std::size_t maxBytes) {
  return std::make_unique<WatchedDirectories>(isTree, maxBytes);
}

bool WatchedDirectories::add(const SearchedDirectory& directory) {
  const FileDescriptor fd = openSearched(directory);
  if (!fd || !m_queue.isOpen() || !tellsOfAllChanges(fd.get(), m_isTree))
    return false;
  const Number root = m_index.addRoot();
  m_roots[directory.identity()] = root;
  return read(fd.get(), root, 0) && m_roots.contains(directory.identity());
}

WatchedDirectories::Number WatchedDirectories::find(const FileIdentity& identity) const {
  const auto found = m_roots.find(identity);
  return found == m_roots.end() ? kNone : found->second;
}

bool WatchedDirectories::refresh(const SearchedDirectory& directory) {
  const WatchQueue::Pending pending = m_queue.pending();
  if (pending.mounts && m_isTree) {
    const FileDescriptor root = openSearched(directory);
    if (!root || hasMountBelow(root.get()))
      return false;
  }
  if (!pending.changes)
    return true;
  std::vector<Touched> touched;
  if (!takeInEvents(touched))
    return false;
  const Number root = find(directory.identity());
  removeTouched(touched, root);
  if (touched.empty() || root == kNone)
    return true;
  const FileDescriptor fd = openSearched(directory);
  return fd && addTouched(touched, fd.get());
}

std::size_t WatchedDirectories::bytes() const {
  constexpr std::size_t kMapNode = 48;
  return sizeof *this + m_index.bytes() + m_watches.capacity() * sizeof(int) +
         m_byWatch.capacity() * sizeof(Number) + m_roots.size() * kMapNode +
         m_roots.bucket_count() * sizeof(void*);
}

/// Reads a directory and, in a tree, all below it. `top` is `level` levels below the open `root`.
bool WatchedDirectories::read(int root, Number top, std::size_t level) {
  OpenAncestors ancestors(root);
  std::vector<Unread> unread = {{top, level}};
  while (!unread.empty()) {
    const Unread directory = unread.back();
    unread.pop_back();
    const int fd = ancestors.open(m_index.path(directory.directory, '/'), directory.level);
    const bool isRoot = m_index.entryOf(directory.directory) == kNone;
    if (fd == -1 && (isRoot || !isPassedBy(errno)))
      return false;  // a root can be open and still closed to us
    if (fd == -1)
      m_index.close(directory.directory);
    else if (!readOne(fd, directory, unread))
      return false;
  }
  return true;
}

bool WatchedDirectories::readOne(int fd, const Unread& directory, std::vector<Unread>& unread) {
  if (!watch(fd, directory.directory) || ignoresCase(fd))
    return false;
  const bool isRead = forEachEntry(fd, [&](std::string_view name, unsigned char type) {
    const NameIndex::Kind kind = kindOf(fd, name, type);
    const Number entry = m_index.addEntry(directory.directory, name, kind);
    if (m_isTree && kind == NameIndex::Kind::kDirectory)
      unread.push_back({m_index.open(entry), directory.level + 1});
  });
  return (isRead || errno == ENOENT) && bytes() <= m_maxBytes;
}

bool WatchedDirectories::watch(int fd, Number directory) {
  const int watch = m_queue.watch(fd);
  if (watch == kNoWatch)
    return false;
  // A directory that was moved meanwhile belongs where it was seen last; what is known of its old
  // place goes with the change that is still to be read.
  if (const Number known = directoryOf(watch); known != kNone)
    m_watches[known] = kNoWatch;
  const auto place = static_cast<std::size_t>(watch);
  if (m_byWatch.size() <= place)
    m_byWatch.resize(place + 1, kNone);
  m_byWatch[place] = directory;
  if (m_watches.size() <= directory)
    m_watches.resize(directory + 1, kNoWatch);
  m_watches[directory] = watch;
  return true;
}

NameIndex::Kind WatchedDirectories::kindOf(int directory,
                                           std::string_view name,
                                           unsigned char type) const {
  if (type != DT_UNKNOWN)
    return kindOfType(type);
  struct stat status {};
  const bool isThere =
      fstatat(directory, std::string(name).c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
  return isThere ? kindOfMode(status.st_mode) : NameIndex::Kind::kFile;
}

bool WatchedDirectories::takeInEvents(std::vector<Touched>& touched) {
  const bool isComplete = m_queue.read([&](const inotify_event& event, std::string_view name) {
    return onEvent(event, name, touched);
  });
  std::ranges::sort(touched);
  touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
  return isComplete;
}

/// Always true.
bool WatchedDirectories::onEvent(const inotify_event& event,
                                 std::string_view name,
                                 std::vector<Touched>& touched) {
  const Number directory = directoryOf(event.wd);
  if (directory == kNone)
    return true;
  const bool isOfItself = name.empty();
  if (isOfItself && m_index.entryOf(directory) == kNone)
    giveUp(directory);
  else if (event.mask & IN_IGNORED)
    unwatch(directory);
  // New rights of a file change nothing here; those of a directory may open or close it.
  else if (!isOfItself && (!(event.mask & IN_ATTRIB) || event.mask & IN_ISDIR))
    touched.push_back({event.wd, std::string(name)});
  return true;
}

void WatchedDirectories::giveUp(Number root) {
  std::erase_if(m_roots, [&](const auto& known) { return known.second == root; });
  m_index.removeRoot(root, [&](Number directory) { unwatch(directory); });
}

/// Everything goes before anything is added: what was moved within a tree has one watch.
void WatchedDirectories::removeTouched(const std::vector<Touched>& touched, Number root) {
  for (const Touched& change : touched) {
    const Number directory = directoryOf(change.watch);
    if (directory == kNone)
      continue;
    if (!m_isTree && directory != root) {
      giveUp(directory);
      continue;
    }
    for (Number entry; (entry = m_index.find(directory, change.name)) != kNone;)
      m_index.removeEntry(entry, [&](Number gone) { unwatch(gone); });
  }
}

bool WatchedDirectories::addTouched(const std::vector<Touched>& touched, int root) {
  return std::ranges::all_of(touched, [&](const Touched& change) {
    const Number directory = directoryOf(change.watch);
    return directory == kNone || addAgain(directory, change.name, root);
  });
}

bool WatchedDirectories::addAgain(Number directory, const std::string& name, int root) {
  if (m_index.find(directory, name) != kNone)
    return true;  // read with a directory that is new itself
  std::string below = m_index.path(directory, '/');
  below += below.empty() ? "" : "/";
  below += name;
  struct stat status {};
  if (!statusBelow(root, below, status))
    return isPassedBy(errno);
  const NameIndex::Kind kind = kindOfMode(status.st_mode);
  const Number entry = m_index.addEntry(directory, name, kind);
  if (!m_isTree || kind != NameIndex::Kind::kDirectory)
    return bytes() <= m_maxBytes;
  std::size_t level = 0;
  const Number opened = m_index.open(entry);
  m_index.rootOf(opened, level);
  return read(root, opened, level);
}

WatchedDirectories::Number WatchedDirectories::directoryOf(int watch) const {
  const auto place = static_cast<std::size_t>(watch);
  return place < m_byWatch.size() ? m_byWatch[place] : kNone;
}

void WatchedDirectories::unwatch(Number directory) {
  if (directory >= m_watches.size() || m_watches[directory] == kNoWatch)
    return;
  const int watch = std::exchange(m_watches[directory], kNoWatch);
  m_byWatch[static_cast<std::size_t>(watch)] = kNone;
  m_queue.unwatch(watch);
}

}  // namespace PAKU_3_1::internal
