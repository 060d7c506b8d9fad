// Which entries of an index lie where a name's tails say, in the order of a walk.
//
// A tail is matched from its end: the entries that bear its last component, then their parents.
// What lies behind links and unread directories is not in the index, so entries of these kinds in
// the middle of a tail become matches of which only the beginning is known.

#pragma once

#include <compare>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "paku/name_index.h"
#include "paku/search_name.h"

namespace PAKU_3_1::internal {

/// A place where a tail leads, or may lead.
struct TailMatch {
  /// Where the tail begins and its known components, as they are spelled on disk. A separator that
  /// is smaller than all characters makes the order of these texts the order of a walk.
  static constexpr NameChar kSeparator = 0;
  NameString directory;
  NameString known;
  std::size_t unknownFrom;  ///< First component that is not known; the tail's length for none.
  bool isExact;             ///< The known components are spelled as they are sought.

  auto operator<=>(const TailMatch& other) const = default;

  /// Returns the known path below the root.
  NameString path() const;
};

/// The tails of one name in the form in which an index compares them.
class SoughtTails final {
 public:
  explicit SoughtTails(const std::vector<Tail>& tails);

  /// Returns the matches of each tail below `root` that begin at most `depth` levels down, -1 being
  /// no limit; for each in ascending order.
  std::vector<std::vector<TailMatch>> matches(const NameIndex& index,
                                              NameIndex::Number root,
                                              int depth) const;

  /// Returns whether an index would know all that the tails may mean.
  bool areForAnIndex() const;

  /// Returns the components of a tail; none for a tail that no path can have.
  std::span<const SoughtName> components(std::size_t tail) const;

 private:
  /// Tails that are ends of each other.
  struct Group {
    std::vector<SoughtName> components;
    std::vector<std::size_t> tailOfLength;  // the tail of that many components, or kNoTail
  };
  static constexpr std::size_t kNoTail = static_cast<std::size_t>(-1);

  class Matching;

  std::vector<Group> m_groups;
  std::size_t m_tailCount;
};

}  // namespace PAKU_3_1::internal
