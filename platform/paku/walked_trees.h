// Which of the trees that are walked are worth an index: those that are searched again, and have
// many entries. The walk of a small tree costs no more than to ask an index, and every index takes
// something that the system has few of.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>

#include "paku/index_settings.h"
#include "paku/searched_directory.h"

namespace PAKU_3_1::internal {

/// One thread at a time. Time is counted in searches of whole trees.
class WalkedTrees final {
 public:
  /// A tree without an index is to be searched `now`. Returns nothing when it is not worth one;
  /// else how long ago it was searched last, 0 when it never was.
  std::optional<std::uint64_t> search(const FileIdentity& tree,
                                      std::uint64_t now,
                                      const IndexSettings& settings);

  /// The walk of a tree has read so many entries; less than all when it was ended.
  void walked(const FileIdentity& tree, std::uint64_t entries);

  /// The system does not tell of all changes in the tree. That is asked again some searches later:
  /// what was mounted in it may be gone.
  void cannotBeKnown(const FileIdentity& tree);

  void clear() { m_trees.clear(); }

 private:
  struct Walks {
    std::uint64_t last = 0;
    std::optional<std::uint64_t> entries;  // the most that a walk has read
    unsigned pause = 0;                    // searches that do not ask for an index
  };

  std::unordered_map<FileIdentity, Walks, FileIdentityHash> m_trees;
};

}  // namespace PAKU_3_1::internal
