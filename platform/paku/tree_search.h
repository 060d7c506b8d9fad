// The search for a name's tails in one directory or tree.

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "paku/directory_tree.h"
#include "paku/search_name.h"

namespace PAKU_3_1::internal {

/// The depth of a search without a bound.
inline constexpr int kWholeTree = -1;

/// Receives paths below the searched directory, some more than once; returns false to end the
/// search.
using FoundBelow = std::function<bool(const std::wstring& below)>;

/// Serves one directory. The tree is walked once, whatever the number of tails: the walk looks for
/// the first component of each tail and looks the rest up where it stands. Files under the whole
/// name, exactly spelled, are reported while the walk is under way; all others come later in the
/// order and wait for its end.
class TreeSearch final {
 public:
  /// `tree` is open; all three are borrowed.
  TreeSearch(const DirectoryTree& tree, const std::vector<Tail>& tails, const FoundBelow& found)
      : m_tree(tree), m_tails(tails), m_found(found), m_waiting(tails.size()) {}

  /// Returns false when `found` ended the search.
  bool run(int depth);

 private:
  struct Waiting {
    std::vector<std::wstring> exact;
    std::vector<std::wstring> folded;
  };

  bool reportWholeNameHere() const;
  bool onMatch(const NameMatch& match);
  bool addExact(const NameMatch& match);
  void addFolded(const NameMatch& match);
  bool reportWaiting() const;

  const DirectoryTree& m_tree;
  const std::vector<Tail>& m_tails;
  const FoundBelow& m_found;
  std::vector<Waiting> m_waiting;  // one per tail
};

}  // namespace PAKU_3_1::internal
