// Walks trees with the kernel's bulk directory call.

#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <iterator>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include "paku/directory_entries_posix.h"
#include "paku/directory_tree.h"
#include "paku/name_table_posix.h"
#include "paku/native_path_posix.h"
#include "paku/open_ancestors_posix.h"
#include "paku/text_encoding.h"
#include "paku/uninterrupted_posix.h"

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

EntryKind kindOfText(int directory, const std::wstring& below) {
  std::string path;
  return nativePath(below, path) ? kindBelow(directory, path) : EntryKind::kNothing;
}

class OpenDirectory final : public MatchDirectory {
 public:
  OpenDirectory(int fd, const std::string& path) : m_fd(fd), m_path(path) {}

  std::wstring path() const override { return decode(m_path); }
  EntryKind kindOf(const std::wstring& below) const override { return kindOfText(m_fd, below); }

  std::wstring spelling(const std::wstring& below) const override { return below; }

  std::vector<std::wstring> spellings(const std::wstring& below,
                                      const std::wstring& name) const override {
    std::string path;
    std::string bytes;
    if (!nativePath(below, path) || !nativePath(name, bytes))
      return {};
    const std::vector<std::string> found = entriesCalled(m_fd, path, bytes);
    std::vector<std::wstring> texts;
    std::ranges::transform(found, std::back_inserter(texts), decode);
    return texts;
  }

 private:
  const int m_fd;
  const std::string& m_path;
};

/// Directories that are still to be read wait on a stack, as paths, so that nothing recurses.
class Walk final {
 public:
  Walk(int start,
       const NameTable& names,
       int depth,
       const DirectoryTree::Visitor& visitor,
       std::uint64_t& entriesRead)
      : m_ancestors(start),
        m_names(names),
        m_depth(depth),
        m_visitor(visitor),
        m_entriesRead(entriesRead) {}

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
    std::size_t level;
  };

  struct Entry {
    std::string name;
    unsigned char type;
    const std::vector<NameTable::Name>* names;
  };

  bool visit(const Directory& directory) {
    const int fd = m_ancestors.open(directory.below, directory.level);
    if (fd == -1)
      return true;
    const bool descends = m_depth < 0 || directory.level < static_cast<std::size_t>(m_depth);
    std::vector<Entry> entries;
    std::vector<std::string> children;
    forEachEntry(fd, [&](std::string_view name, unsigned char type) {
      ++m_entriesRead;
      if (const auto* names = m_names.find(name))
        entries.push_back({std::string(name), type, names});
      if (descends && isRealDirectory(fd, name, type))
        children.emplace_back(name);
    });
    schedule(directory, std::move(children));
    std::ranges::sort(entries, {}, &Entry::name);
    const OpenDirectory open(fd, directory.below);
    return std::ranges::all_of(entries,
                               [&](const Entry& entry) { return report(open, fd, entry); });
  }

  /// The first child goes on top of the stack.
  void schedule(const Directory& directory, std::vector<std::string> children) {
    std::ranges::sort(children, std::ranges::greater());
    for (const std::string& child : children) {
      std::string below = directory.below.empty() ? child : directory.below + '/' + child;
      m_pending.push_back({std::move(below), directory.level + 1});
    }
  }

  bool report(const OpenDirectory& directory, int fd, const Entry& entry) const {
    const EntryKind kind = kindOfEntry(fd, entry.name, entry.type);
    if (kind == EntryKind::kNothing)
      return true;
    const std::wstring name = decode(entry.name);
    return std::ranges::all_of(*entry.names, [&](const NameTable::Name& sought) {
      return m_visitor({directory, name, sought.index, sought.bytes == entry.name, kind});
    });
  }

  OpenAncestors m_ancestors;
  const NameTable& m_names;
  const int m_depth;
  const DirectoryTree::Visitor& m_visitor;
  std::uint64_t& m_entriesRead;
  std::vector<Directory> m_pending;
};

int openTree(const std::wstring& directory) {
  std::string path;
  if (!nativePath(directory, path))
    return -1;
  return uninterrupted(
      [&] { return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK); });
}

}  // namespace

DirectoryTree::DirectoryTree(const std::wstring& directory) : m_handle(openTree(directory)) {}

DirectoryTree::~DirectoryTree() {
  if (isOpen())
    close(static_cast<int>(m_handle));
}

EntryKind DirectoryTree::kindOf(const std::wstring& below) const {
  return kindOfText(static_cast<int>(m_handle), below);
}

std::wstring DirectoryTree::spelling(const std::wstring& below) const {
  return below;
}

void DirectoryTree::visit(const std::vector<std::wstring>& names,
                          int depth,
                          const Visitor& visitor) const {
  const NameTable table(names);
  Walk(static_cast<int>(m_handle), table, depth, visitor, m_entriesRead).run();
}

}  // namespace PAKU_3_1::internal
