// A directory with everything below it, as a search asks about it.
//
// Paths below a directory are relative texts with the system's separator; "" is the directory
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

/// The directory in which a match lies, for the time of the report.
class MatchDirectory {
 public:
  /// Returns its path below the tree's own directory.
  virtual std::wstring path() const = 0;

  /// Returns what the path leads to, links being followed.
  virtual EntryKind kindOf(const std::wstring& below) const = 0;

  /// Returns the path as it is spelled on disk, where letter case does not tell names apart; the
  /// path itself elsewhere.
  virtual std::wstring spelling(const std::wstring& below) const = 0;

  /// Returns the entries of the directory `below` that are called `name`, in ascending order.
  virtual std::vector<std::wstring> spellings(const std::wstring& below,
                                              const std::wstring& name) const = 0;

 protected:
  ~MatchDirectory() = default;
};

/// An entry that bears one of the sought names.
struct NameMatch {
  const MatchDirectory& directory;
  const std::wstring& name;  ///< As it is spelled on disk.
  std::size_t index;         ///< Of the sought name.
  bool isExact;              ///< The sought one, as the file system compares names.
  EntryKind kind;            ///< Never `kNothing`.
};

class DirectoryTree final {
 public:
  /// Returns false to end the visit.
  using Visitor = std::function<bool(const NameMatch& match)>;

  /// `directory` may be a link.
  explicit DirectoryTree(const std::wstring& directory);
  ~DirectoryTree();

  DirectoryTree(const DirectoryTree&) = delete;
  DirectoryTree& operator=(const DirectoryTree&) = delete;

  /// Returns false for what is no directory or cannot be read; nothing else may be asked then.
  bool isOpen() const { return m_handle != -1; }

  /// Returns what the path leads to, links being followed.
  EntryKind kindOf(const std::wstring& below) const;

  /// Returns the path as it is spelled on disk, see above.
  std::wstring spelling(const std::wstring& below) const;

  /// Reports the entries that bear one of `names`, down to `depth` levels of sub-directories, or
  /// all for -1. A directory comes before its sub-directories, these in ascending order and depth
  /// first; in each the entries in ascending order. Links to directories are not entered.
  void visit(const std::vector<std::wstring>& names, int depth, const Visitor& visitor) const;

  /// Returns how many entries the visits have read.
  std::uint64_t entriesRead() const { return m_entriesRead; }

 private:
  std::intptr_t m_handle;
  mutable std::uint64_t m_entriesRead = 0;
};

/// Makes the directory `below` the entry `name` of it.
inline void appendEntry(std::wstring& below, const std::wstring& name) {
  if (!below.empty())
    below += separatorOf(systemPathStyle());
  below += name;
}

}  // namespace PAKU_3_1::internal
