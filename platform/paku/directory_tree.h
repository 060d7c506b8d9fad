// A directory with everything below it, as a search asks about it.
//
// Paths below the directory are relative texts with the system's separator; "" is the directory
// itself. Letters compare as the file system compares them; where that tells 'a' from 'A', the
// ASCII letters compare without case as well. Nothing is ever opened but directories.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "paku/path_style.h"

namespace PAKU_3_1::internal {

enum class EntryKind {
  kNothing,    ///< Also a link that leads nowhere.
  kDirectory,  ///< Also a link to one.
  kFile,       ///< Everything else.
};

/// An entry that bears one of the sought names.
struct NameMatch {
  const std::wstring& directory;  ///< Below the tree's own.
  const std::wstring& name;       ///< As it is spelled on disk.
  std::size_t index;              ///< Of the sought name.
  bool isExact;                   ///< The spelling is the sought one.
  EntryKind kind;                 ///< Never `kNothing`.
};

class DirectoryTree final {
 public:
  /// Returns false to end the visit.
  using Visitor = std::function<bool(const NameMatch& match)>;

  /// `directory` may be a link. One that does not exist or cannot be read is an empty tree.
  explicit DirectoryTree(const std::wstring& directory);
  ~DirectoryTree();

  DirectoryTree(const DirectoryTree&) = delete;
  DirectoryTree& operator=(const DirectoryTree&) = delete;

  bool isOpen() const { return m_handle != -1; }

  /// Returns what the path leads to, links being followed.
  EntryKind kindOf(const std::wstring& below) const;

  /// Returns the entries of the directory `below` that are called `name`, in ascending order.
  std::vector<std::wstring> spellings(const std::wstring& below, const std::wstring& name) const;

  /// Reports the entries that bear one of `names`, down to `depth` levels of sub-directories, or
  /// all for -1. A directory comes before its sub-directories, these in ascending order and depth
  /// first; in each the entries in ascending order. Links to directories are not entered.
  void visit(const std::vector<std::wstring>& names, int depth, const Visitor& visitor) const;

 private:
  std::intptr_t m_handle;
};

/// Makes the directory `below` the entry `name` of it.
inline void appendEntry(std::wstring& below, const std::wstring& name) {
  if (!below.empty())
    below += separatorOf(systemPathStyle());
  below += name;
}

}  // namespace PAKU_3_1::internal
