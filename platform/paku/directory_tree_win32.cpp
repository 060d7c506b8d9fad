// Walks trees with the bulk directory call: basic information, large portions.
//
// Paths carry the prefix that lifts the limit of their length. Names are compared as the file
// system compares them, without letter case, so a match is an exact one and is reported as it is
// spelled on disk.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "paku/directory_tree.h"
#include "paku/file_status_win32.h"
#include "paku/native_path_win32.h"
#include "paku/no_dialogs_win32.h"

namespace PAKU_3_1::internal {
namespace {

std::wstring pathBelow(const std::wstring& directory, std::wstring_view below) {
  if (below.empty())
    return directory;
  std::wstring path = directory;
  if (path.back() != L'\\')
    path += L'\\';
  return path.append(below);
}

bool isDots(const wchar_t* name) {
  return std::wstring_view(name) == L"." || std::wstring_view(name) == L"..";
}

/// Owns a running listing.
class Listing final {
 public:
  /// `pattern`: a directory with "\*" behind it, or a path without a wildcard: that entry alone.
  explicit Listing(const std::wstring& pattern) {
    if (pattern.size() <= kLongestPath)
      m_find = FindFirstFileExW(pattern.c_str(),
                                FindExInfoBasic,
                                &m_entry,
                                FindExSearchNameMatch,
                                nullptr,
                                FIND_FIRST_EX_LARGE_FETCH);
  }
  ~Listing() {
    if (isOpen())
      FindClose(m_find);
  }

  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;

  bool isOpen() const { return m_find != INVALID_HANDLE_VALUE; }
  const WIN32_FIND_DATAW& entry() const { return m_entry; }
  bool next() { return FindNextFileW(m_find, &m_entry) != 0; }

 private:
  const NoDialogs m_noDialogs;
  WIN32_FIND_DATAW m_entry = {};
  HANDLE m_find = INVALID_HANDLE_VALUE;
};

/// Links and junctions name another place. Other files with a tag are stored in a special way only.
bool isLink(const WIN32_FIND_DATAW& entry) {
  if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
    return false;
  return entry.dwReserved0 == 0 || IsReparseTagNameSurrogate(entry.dwReserved0);
}

bool isRealDirectory(const WIN32_FIND_DATAW& entry) {
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && !isLink(entry);
}

EntryKind kindOfPath(const std::wstring& directory, std::wstring_view below) {
  WIN32_FILE_ATTRIBUTE_DATA status = {};
  const bool isPath = canBeName(below) && directory.size() + below.size() < kLongestPath;
  if (!isPath || statusOf(pathBelow(directory, below), status) != 0)
    return EntryKind::kNothing;
  return isDirectory(status) ? EntryKind::kDirectory : EntryKind::kFile;
}

/// Returns how the entry is called on disk; nothing when there is none.
std::wstring nameOnDisk(const std::wstring& directory, std::wstring_view below) {
  if (below.empty() || !canBeName(below))
    return {};
  const Listing listing(pathBelow(directory, below));
  return listing.isOpen() ? listing.entry().cFileName : std::wstring();
}

std::wstring pathOnDisk(const std::wstring& directory, const std::wstring& below) {
  std::wstring spelled;
  for (std::size_t at = 0; at < below.size();) {
    const std::size_t end = std::min(below.find(L'\\', at), below.size());
    const std::wstring name = nameOnDisk(directory, std::wstring_view(below).substr(0, end));
    appendEntry(spelled, name.empty() ? below.substr(at, end - at) : name);
    at = end + 1;
  }
  return spelled;
}

class OpenDirectory final : public MatchDirectory {
 public:
  OpenDirectory(const std::wstring& root, const std::wstring& below)
      : m_below(below), m_path(pathBelow(root, below)) {}

  std::wstring path() const override { return m_below; }
  EntryKind kindOf(const std::wstring& below) const override { return kindOfPath(m_path, below); }
  std::wstring spelling(const std::wstring& below) const override {
    return pathOnDisk(m_path, below);
  }

  std::vector<std::wstring> spellings(const std::wstring& below,
                                      const std::wstring& name) const override {
    std::wstring entry = nameOnDisk(pathBelow(m_path, below), name);
    return entry.empty() ? std::vector<std::wstring>() : std::vector{std::move(entry)};
  }

 private:
  const std::wstring& m_below;
  const std::wstring m_path;
};

/// The sought names, for comparison with every entry of a tree. Names of unlike length differ.
class Names final {
 public:
  explicit Names(const std::vector<std::wstring>& names) : m_names(names) {
    for (const std::wstring& name : names) m_longest = std::max(m_longest, name.size());
    m_lengths.resize(m_longest + 1);
    for (const std::wstring& name : names) m_lengths[name.size()] = true;
  }

  bool isSought(std::wstring_view entry) const {
    return entry.size() <= m_longest && m_lengths[entry.size()] &&
           std::ranges::any_of(m_names, [&](const auto& name) { return areEqual(name, entry); });
  }

  static bool areEqual(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() &&
           CompareStringOrdinal(
               a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()), TRUE) ==
               CSTR_EQUAL;
  }

  const std::vector<std::wstring>& all() const { return m_names; }

 private:
  const std::vector<std::wstring>& m_names;
  std::size_t m_longest = 0;
  std::vector<bool> m_lengths;
};

/// Directories that are still to be read wait on a stack, as paths, so that nothing recurses.
class Walk final {
 public:
  Walk(const std::wstring& root,
       const Names& names,
       int depth,
       const DirectoryTree::Visitor& visitor)
      : m_root(root), m_names(names), m_depth(depth), m_visitor(visitor) {}

  void run() {
    m_pending.push_back({L"", 0});
    bool goesOn = true;
    while (goesOn && !m_pending.empty()) {
      const Directory directory = std::move(m_pending.back());
      m_pending.pop_back();
      goesOn = visit(directory);
    }
  }

 private:
  struct Directory {
    std::wstring below;
    int level;
  };

  struct Contents {
    std::vector<std::wstring> matches;
    std::vector<std::wstring> children;
  };

  bool visit(const Directory& directory) {
    Contents contents = read(directory);
    schedule(directory, std::move(contents.children));
    std::ranges::sort(contents.matches);
    const OpenDirectory open(m_root, directory.below);
    return std::ranges::all_of(contents.matches,
                               [&](const auto& name) { return report(open, name); });
  }

  /// Reads to the end, so that the directory is closed when the visitor is called. Nothing for one
  /// that cannot be read.
  Contents read(const Directory& directory) const {
    Contents contents;
    Listing listing(pathBelow(m_root, directory.below.empty() ? L"*" : directory.below + L"\\*"));
    if (!listing.isOpen())
      return contents;
    const bool descends = m_depth < 0 || directory.level < m_depth;
    do {
      const WIN32_FIND_DATAW& entry = listing.entry();
      if (isDots(entry.cFileName))
        continue;
      if (m_names.isSought(entry.cFileName))
        contents.matches.emplace_back(entry.cFileName);
      if (descends && isRealDirectory(entry))
        contents.children.emplace_back(entry.cFileName);
    } while (listing.next());
    return contents;
  }

  /// The first child goes on top of the stack.
  void schedule(const Directory& directory, std::vector<std::wstring> children) {
    std::ranges::sort(children, std::ranges::greater());
    for (const std::wstring& child : children) {
      std::wstring below = directory.below;
      appendEntry(below, child);
      m_pending.push_back({std::move(below), directory.level + 1});
    }
  }

  bool report(const OpenDirectory& directory, const std::wstring& name) const {
    const EntryKind kind = directory.kindOf(name);
    if (kind == EntryKind::kNothing)
      return true;
    for (std::size_t i = 0; i < m_names.all().size(); ++i)
      if (Names::areEqual(m_names.all()[i], name) &&
          !m_visitor({directory, name, i, /*isExact=*/true, kind}))
        return false;
    return true;
  }

  const std::wstring& m_root;
  const Names& m_names;
  const int m_depth;
  const DirectoryTree::Visitor& m_visitor;
  std::vector<Directory> m_pending;
};

const std::wstring& rootOf(std::intptr_t handle) {
  return *reinterpret_cast<const std::wstring*>(handle);
}

/// Returns a path of its own for a directory that can be read, -1 for anything else.
std::intptr_t openTree(const std::wstring& directory) {
  auto path = std::make_unique<std::wstring>();
  if (!extendedPath(directory, *path) || !Listing(pathBelow(*path, L"*")).isOpen())
    return -1;
  return reinterpret_cast<std::intptr_t>(path.release());
}

}  // namespace

DirectoryTree::DirectoryTree(const std::wstring& directory) : m_handle(openTree(directory)) {}

DirectoryTree::~DirectoryTree() {
  if (isOpen())
    delete &rootOf(m_handle);
}

EntryKind DirectoryTree::kindOf(const std::wstring& below) const {
  return kindOfPath(rootOf(m_handle), below);
}

std::wstring DirectoryTree::spelling(const std::wstring& below) const {
  return pathOnDisk(rootOf(m_handle), below);
}

void DirectoryTree::visit(const std::vector<std::wstring>& names,
                          int depth,
                          const Visitor& visitor) const {
  Walk(rootOf(m_handle), Names(names), depth, visitor).run();
}

}  // namespace PAKU_3_1::internal
