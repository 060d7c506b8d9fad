// The indexes of the process, and which of them are kept.
//
// Each tree has a lock of its own, held while its index is built, brought up to date or read; the
// registry's lock guards the list of trees alone and is never held while waiting for a tree's.
// A child that a fork made begins without indexes: its parent's belong to its parent.

#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "paku/known_directories.h"
#include "paku/tail_matches.h"
#include "paku/walked_trees.h"

namespace PAKU_3_1::internal {

/// What all indexes take and have done, for benchmarks and tests.
struct IndexCounts {
  std::size_t trees = 0;
  std::size_t entries = 0;
  std::size_t bytes = 0;
  std::size_t built = 0;    ///< Since the process began, as are those below.
  std::size_t dropped = 0;  ///< No longer to be trusted.
  std::size_t answered = 0;
};

class TreeRegistry final {
 public:
  using Matches = std::vector<std::vector<TailMatch>>;

  TreeRegistry() = default;
  TreeRegistry(const TreeRegistry&) = delete;
  TreeRegistry& operator=(const TreeRegistry&) = delete;

  /// Returns the registry of this process.
  static TreeRegistry& instance();

  /// Returns the matches in the directory. Nothing when it has to be walked.
  std::optional<Matches> matches(const SearchedDirectory& directory,
                                 int depth,
                                 const SoughtTails& tails);

  /// A whole tree that had to be walked has been, as far as the search needed it.
  void walked(const FileIdentity& tree, std::uint64_t entries);

  /// Drops all indexes.
  void clear();
  IndexCounts counts();

 private:
  /// One tree, or all directories that are searched alone.
  struct Tree {
    explicit Tree(std::atomic<std::size_t>& all) : bytesOfAll(all) {}
    ~Tree() { bytesOfAll -= bytes; }

    std::mutex lock;  // guards what follows up to the next comment
    std::unique_ptr<IKnownDirectories> known;
    unsigned user = 0;         // whose rights the index was read with
    unsigned scans = 1;        // a tree is listed when its index is due
    unsigned scansBefore = 1;  // as many walks come before the next index
    unsigned uses = 0;
    std::unordered_map<FileIdentity, unsigned, FileIdentityHash> seenAlone;
    // Read without the lock.
    std::atomic<std::size_t> bytes = 0;
    std::atomic<std::size_t> entries = 0;
    std::atomic<std::size_t>& bytesOfAll;
  };
  struct Listed {
    FileIdentity identity;
    std::shared_ptr<Tree> tree;
    std::uint64_t used;  // when last
  };

  std::shared_ptr<Tree> treeOf(const SearchedDirectory& directory, bool isWhole);
  std::shared_ptr<Tree> treeToBuild(const SearchedDirectory& directory, std::uint64_t ago);
  std::shared_ptr<Tree> listed(const FileIdentity& identity);
  std::shared_ptr<Tree> takeFromPlace(std::uint64_t ago);
  std::optional<Matches> inTree(Tree& tree,
                                bool isWhole,
                                const SearchedDirectory& directory,
                                int depth,
                                const SoughtTails& tails);
  bool prepare(Tree& tree, bool isWhole, const SearchedDirectory& directory);
  bool isDue(Tree& tree, bool isWhole, const FileIdentity& identity) const;
  bool build(Tree& tree, bool isWhole, const SearchedDirectory& directory);
  void drop(Tree& tree);
  void count(Tree& tree);
  void makeRoom(const Tree& used, std::size_t maxBytes);
  bool forgetOldest(const Tree& used);

  // Of all trees, those included that are still used and no longer listed. Every scan asks for it:
  // not under the lock.
  std::atomic<std::size_t> m_bytes = 0;
  std::mutex m_lock;          // guards m_trees, m_walked and m_now
  std::list<Listed> m_trees;  // the one used last comes first
  WalkedTrees m_walked;       // those that are not listed
  std::uint64_t m_now = 0;    // searches of whole trees
  Tree m_alone{m_bytes};
  std::atomic<std::size_t> m_built = 0;
  std::atomic<std::size_t> m_dropped = 0;
  std::atomic<std::size_t> m_answered = 0;
};

}  // namespace PAKU_3_1::internal
