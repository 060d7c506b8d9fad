// Answers searches from what is known of a directory, without reading it again.
//
// The first scan of a tree in a process is a walk. When the tree is scanned again and is not small,
// it is indexed, and later scans cost a look-up and the check of what it yields. An index is never
// older than the search that uses it: the system tells of changes, and what it tells is taken in
// first. Where the system does not tell of all changes there is no index, and the directory is
// walked as ever. The results and their order are those of the walk.
//
// Any number of threads may search at once. See index_settings.h for how this is switched.

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "paku/search_name.h"
#include "paku/tree_search.h"

namespace PAKU_3_1::internal {

class TreeIndex final {
 public:
  enum class Answer {
    kUnknown,  ///< The directory has to be walked; nothing was reported.
    kAll,      ///< All was reported.
    kEnded,    ///< `found` ended the search.
  };

  /// Tells the tails of the sought name, once there is a place to look.
  using TailSource = std::function<const std::vector<Tail>&()>;

  explicit TreeIndex(TailSource tails);
  ~TreeIndex();

  TreeIndex(const TreeIndex&) = delete;
  TreeIndex& operator=(const TreeIndex&) = delete;

  /// Reports what `TreeSearch` would.
  Answer search(const std::wstring& directory, int depth, const FoundBelow& found);

  /// The directory that `search` did not know has been walked; so many entries were read.
  void walked(std::uint64_t entries);

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace PAKU_3_1::internal
