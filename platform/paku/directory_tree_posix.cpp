// Walks trees with the kernel's bulk directory call.
//
// Directories that are still to be read wait on a stack, as paths: a tree may be as deep as it
// likes, and only the directory at hand is open.

#include <algorithm>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include "paku/directory_entries_posix.h"
#include "paku/directory_tree.h"
#include "paku/name_table_posix.h"
#include "paku/native_path_posix.h"
#include "paku/text_encoding.h"

namespace PAKU_3_1::internal {
namespace {

/// True for a directory that is no link. Only some file systems leave the type open.
bool isRealDirectory(int directory, std::string_view name, unsigned char type) {
  if (type != DT_UNKNOWN)
    return type == DT_DIR;
  struct stat status {};
  return fstatat(directory, std::string(name).c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISDIR(status.st_mode);
}

EntryKind kindOfEntry(int directory, const std::string& name, unsigned char type) {
  if (type == DT_LNK || type == DT_UNKNOWN)
    return kindBelow(directory, name);
  return type == DT_DIR ? EntryKind::kDirectory : EntryKind::kFile;
}

class Walk final {
 public:
  Walk(int start, const NameTable& names, int depth, const DirectoryTree::Visitor& visitor)
      : m_start(start), m_names(names), m_depth(depth), m_visitor(visitor) {}

  void run() {
    m_pending.push_back({"", 0});
    bool goesOn = true;
    while (goesOn && !m_pending.empty()) {
      const Directory directory = std::move(m_pending.back());
      m_pending.pop_back();
      goesOn = visit(directory);
    }
  }

 private:
  struct Directory {
    std::string below;
    int level;
  };

  struct Entry {
    std::string name;
    unsigned char type;
    const std::vector<NameTable::Name>* names;
  };

  bool visit(const Directory& directory) {
    const FileDescriptor fd = openDirectoryBelow(m_start, directory.below, false);
    if (!fd)
      return true;
    const bool descends = m_depth < 0 || directory.level < m_depth;
    std::vector<Entry> entries;
    std::vector<std::string> children;
    forEachEntry(fd.get(), [&](std::string_view name, unsigned char type) {
      if (const auto* names = m_names.find(name))
        entries.push_back({std::string(name), type, names});
      if (descends && isRealDirectory(fd.get(), name, type))
        children.emplace_back(name);
    });
    schedule(directory, std::move(children));
    std::ranges::sort(entries, {}, &Entry::name);
    return report(directory, fd.get(), entries);
  }

  /// The first child goes on top of the stack.
  void schedule(const Directory& directory, std::vector<std::string> children) {
    std::ranges::sort(children, std::ranges::greater());
    for (const std::string& child : children) {
      std::string below = directory.below.empty() ? child : directory.below + '/' + child;
      m_pending.push_back({std::move(below), directory.level + 1});
    }
  }

  bool report(const Directory& directory, int fd, const std::vector<Entry>& entries) const {
    if (entries.empty())
      return true;
    const std::wstring below = decode(directory.below);
    return std::ranges::all_of(entries, [&](const Entry& entry) {
      const EntryKind kind = kindOfEntry(fd, entry.name, entry.type);
      const std::wstring name = decode(entry.name);
      return kind == EntryKind::kNothing ||
             std::ranges::all_of(*entry.names, [&](const NameTable::Name& sought) {
               return m_visitor({below, name, sought.index, sought.bytes == entry.name, kind});
             });
    });
  }

  const int m_start;
  const NameTable& m_names;
  const int m_depth;
  const DirectoryTree::Visitor& m_visitor;
  std::vector<Directory> m_pending;
};

int openTree(const std::wstring& directory) {
  std::string path;
  if (!nativePath(directory, path))
    return -1;
  return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
}

}  // namespace

DirectoryTree::DirectoryTree(const std::wstring& directory) : m_handle(openTree(directory)) {}

DirectoryTree::~DirectoryTree() {
  if (isOpen())
    close(static_cast<int>(m_handle));
}

EntryKind DirectoryTree::kindOf(const std::wstring& below) const {
  std::string path;
  if (!nativePath(below, path))
    return EntryKind::kNothing;
  return kindBelow(static_cast<int>(m_handle), path);
}

std::vector<std::wstring> DirectoryTree::spellings(const std::wstring& below,
                                                   const std::wstring& name) const {
  std::string path;
  if (!nativePath(below, path))
    return {};
  const FileDescriptor fd = openDirectoryBelow(static_cast<int>(m_handle), path, true);
  if (!fd)
    return {};
  const NameTable table({name});
  std::vector<std::string> found;
  forEachEntry(fd.get(), [&](std::string_view entry, unsigned char) {
    if (table.find(entry))
      found.emplace_back(entry);
  });
  std::ranges::sort(found);
  std::vector<std::wstring> texts;
  std::ranges::transform(found, std::back_inserter(texts), decode);
  return texts;
}

void DirectoryTree::visit(const std::vector<std::wstring>& names,
                          int depth,
                          const Visitor& visitor) const {
  if (!isOpen())
    return;
  const NameTable table(names);
  Walk(static_cast<int>(m_handle), table, depth, visitor).run();
}

}  // namespace PAKU_3_1::internal
