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

#include "paku/directory_listing_win32.h"
#include "paku/directory_tree.h"
#include "paku/native_path_win32.h"

namespace PAKU_3_1::internal {
namespace {

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
       const DirectoryTree::Visitor& visitor,
       std::uint64_t& entriesRead)
      : m_root(root),
        m_names(names),
        m_depth(depth),
        m_visitor(visitor),
        m_entriesRead(entriesRead) {}

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
    Contents contents = m_depth == 0 ? lookUp() : read(directory);
    schedule(directory, std::move(contents.children));
    std::ranges::sort(contents.matches);
    const OpenDirectory open(m_root, directory.below);
    return std::ranges::all_of(contents.matches,
                               [&](const auto& name) { return report(open, name); });
  }

  /// The entries that bear sought names, each looked up by itself.
  Contents lookUp() const {
    Contents contents;
    for (const std::wstring& name : m_names.all()) {
      // A short name leads to an entry that is called otherwise.
      std::wstring entry = nameOnDisk(m_root, name);
      if (!entry.empty() && Names::areEqual(entry, name))
        contents.matches.push_back(std::move(entry));
    }
    m_entriesRead += contents.matches.size();
    std::ranges::sort(contents.matches);
    contents.matches.erase(std::unique(contents.matches.begin(), contents.matches.end()),
                           contents.matches.end());
    return contents;
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
      ++m_entriesRead;
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
  std::uint64_t& m_entriesRead;
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
  Walk(rootOf(m_handle), Names(names), depth, visitor, m_entriesRead).run();
}

}  // namespace PAKU_3_1::internal
