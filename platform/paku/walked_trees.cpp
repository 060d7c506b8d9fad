// See walked_trees.h.

#include "paku/walked_trees.h"

#include <algorithm>

namespace PAKU_3_1::internal {
namespace {

constexpr std::size_t kMostTrees = 4096;
constexpr unsigned kPause = 64;

}  // namespace

std::optional<std::uint64_t> WalkedTrees::search(const FileIdentity& tree,
                                                 std::uint64_t now,
                                                 const IndexSettings& settings) {
  if (m_trees.size() >= kMostTrees && !m_trees.contains(tree))
    m_trees.clear();  // they begin anew
  Walks& walks = m_trees[tree];
  const std::uint64_t ago = walks.last == 0 ? 0 : now - walks.last;
  walks.last = now;
  if (settings.use == IndexUse::kFromFirstScan)
    return ago;
  if (walks.pause > 0) {
    --walks.pause;
    return std::nullopt;
  }
  if (!walks.entries || *walks.entries < settings.fewestEntries)
    return std::nullopt;
  return ago;
}

void WalkedTrees::walked(const FileIdentity& tree, std::uint64_t entries) {
  const auto found = m_trees.find(tree);
  if (found == m_trees.end())
    return;
  Walks& walks = found->second;
  walks.entries = std::max(walks.entries.value_or(0), entries);
}

void WalkedTrees::cannotBeKnown(const FileIdentity& tree) {
  const auto found = m_trees.find(tree);
  if (found != m_trees.end())
    found->second.pause = kPause;
}

}  // namespace PAKU_3_1::internal
