// The entries of directories by their names: the memory of an index, without any system call.
//
// Directories and entries have numbers. Names lie in one arena, parents are numbers, and entries
// whose names have the same hash hang in one chain, so that a file costs little more than its
// name. What was removed stays in its chain until there is enough of it; then all chains are made
// anew and the numbers are given out again. One thread at a time.

#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <unordered_map>
#include <vector>

#include "paku/block_vector.h"
#include "paku/index_names.h"

namespace PAKU_3_1::internal {

class NameIndex final {
 public:
  using Number = std::uint32_t;
  static constexpr Number kNone = std::numeric_limits<Number>::max();

  enum class Kind {
    kFile,       ///< Neither directory nor link.
    kDirectory,  ///< What lies in it is unknown until `open`.
    kLink,       ///< May lead to a directory.
  };

  /// Adds a directory that is no entry of another.
  Number addRoot();

  /// Adds an entry of `directory`, which must have none of that name.
  Number addEntry(Number directory, NameView name, Kind kind);

  /// Returns the directory that the entry of kind `kDirectory` is; entries can be added to it.
  Number open(Number entry);

  /// Makes an empty directory that `open` gave unknown again. Not for roots.
  void close(Number directory);

  /// Returns the entry that is called exactly `name`. `kNone` when there is none.
  Number find(Number directory, NameView name) const;

  /// Removes an entry and all below it. `gone(directory)` is called for each directory among them.
  template <class Gone>
  void removeEntry(Number entry, const Gone& gone) {
    if (const Number directory = openedAs(entry); directory != kNone)
      removeDirectory(directory, gone);
    unlink(entry);
    tidy();
  }

  /// Removes a root and all below it, as above.
  template <class Gone>
  void removeRoot(Number root, const Gone& gone) {
    removeDirectory(root, gone);
    tidy();
  }

  /// Calls `use(entry)` for the entries whose names are called `name` when letter case does not
  /// count.
  template <class Use>
  void forEachCalled(const SoughtName& name, const Use& use) const {
    if (m_heads.empty())
      return;
    for (Number i = m_heads[bucketOf(name.hash)]; i != kNone; i = m_entries[i].nextInBucket)
      if (m_entries[i].directory != kNone && isCalled(i, name))
        use(i);
  }

  /// Returns whether an entry, links and directories that are not open alone, may be called so.
  bool hasOpaqueCalled(const SoughtName& name) const { return m_opaque.contains(name.hash); }

  bool isCalled(Number entry, const SoughtName& name) const {
    return m_entries[entry].hash == name.hash && internal::isCalled(this->name(entry), name.text);
  }
  NameView name(Number entry) const;
  Kind kind(Number entry) const;
  /// Returns the directory that a directory entry is. `kNone` when it is not open.
  Number openedAs(Number entry) const;
  Number directoryOf(Number entry) const { return m_entries[entry].directory; }
  /// Returns the entry that a directory is. `kNone` for a root.
  Number entryOf(Number directory) const { return m_directories[directory].entry; }

  /// Returns the root above a directory and fills the number of levels between them.
  Number rootOf(Number directory, std::size_t& level) const;

  /// Returns the path of a directory below its root, "" for the root.
  NameString path(Number directory, NameChar separator) const;

  std::size_t entryCount() const { return m_entryCount; }
  std::size_t bytes() const;

 private:
  struct Entry {
    std::uint32_t name;  // where its length stands in the arena, and then its bytes
    std::uint32_t hash;
    Number directory;  // kNone for what was removed
    Number content;    // the directory that it is, or one of the values below
    Number nextInBucket;
    Number nextInDirectory;
    Number previousInDirectory;
  };
  struct Directory {
    Number entry;
    Number first;
  };
  static constexpr Number kClosedDirectory = kNone - 1;
  static constexpr Number kPlainFile = kNone - 2;
  static constexpr Number kSymbolicLink = kNone - 3;

  template <class Gone>
  void removeDirectory(Number top, const Gone& gone) {
    std::vector<Number> doomed = {top};
    while (!doomed.empty()) {
      const Number directory = doomed.back();
      doomed.pop_back();
      while (m_directories[directory].first != kNone) {
        const Number entry = m_directories[directory].first;
        if (const Number below = openedAs(entry); below != kNone)
          doomed.push_back(below);
        unlink(entry);
      }
      gone(directory);
      m_freeDirectories.push_back(directory);
    }
  }

  std::size_t bucketOf(std::uint32_t hash) const { return hash & (m_heads.size() - 1); }
  Number newDirectory(Number entry);
  Number newEntry();
  std::uint32_t storeName(NameView name);
  void chain(Number entry);
  void chainAll(std::size_t buckets);
  void unlink(Number entry);
  void countOpaque(std::uint32_t hash, bool isMore);
  void tidy();
  void compactNames();

  BlockVector<NameChar, 16384> m_names;
  std::size_t m_wasted = 0;  // units of names that are gone
  BlockVector<Entry, 1024> m_entries;
  std::vector<Directory> m_directories;
  std::vector<Number> m_heads;  // first entry of each bucket; as many as a power of two
  std::vector<Number> m_freeDirectories;
  Number m_freeEntry = kNone;
  std::size_t m_entryCount = 0;
  std::size_t m_removed = 0;  // entries that are in their chains still
  std::unordered_map<std::uint32_t, std::uint32_t> m_opaque;  // how many have this hash
};

}  // namespace PAKU_3_1::internal
