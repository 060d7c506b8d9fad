// Which trees are indexed, when, and for how long.

#include "paku/tree_registry.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "paku/index_settings.h"
#include "paku/tree_search.h"

namespace PAKU_3_1::internal {
namespace {

constexpr std::size_t kMostTrees = 24;
constexpr std::size_t kMostAlone = 4096;
constexpr unsigned kMostScansBefore = 64;
constexpr unsigned kUsesThatProve = 64;
constexpr unsigned kNever = std::numeric_limits<unsigned>::max();  // scans of what cannot be known

}  // namespace

std::optional<TreeRegistry::Matches> TreeRegistry::matches(const SearchedDirectory& directory,
                                                           int depth,
                                                           const SoughtTails& tails) {
  if (indexSettings().use == IndexUse::kNever)
    return std::nullopt;
  const bool isWhole = depth == kWholeTree;
  const std::shared_ptr<Tree> tree = treeOf(directory, isWhole);
  if (!tree && isWhole)
    return std::nullopt;
  if (tree && (isWhole || tree->bytes != 0))
    return inTree(*tree, true, directory, depth, tails);
  if (depth != 0)
    return std::nullopt;
  return inTree(m_alone, false, directory, depth, tails);
}

void TreeRegistry::walked(const FileIdentity& tree, std::uint64_t entries) {
  const std::lock_guard guard(m_lock);
  m_walked.walked(tree, entries);
}

/// Returns null for a tree that is to be walked, and for a directory that is in no list.
std::shared_ptr<TreeRegistry::Tree> TreeRegistry::treeOf(const SearchedDirectory& directory,
                                                         bool isWhole) {
  std::optional<std::uint64_t> ago;
  {
    const std::lock_guard guard(m_lock);
    std::shared_ptr<Tree> tree = listed(directory.identity());
    if (tree || !isWhole)
      return tree;
    ago = m_walked.search(directory.identity(), ++m_now, indexSettings());
  }
  return ago ? treeToBuild(directory, *ago) : nullptr;
}

/// Lists the tree of a directory, which was searched so long ago, if there is a place for it.
std::shared_ptr<TreeRegistry::Tree> TreeRegistry::treeToBuild(const SearchedDirectory& directory,
                                                              std::uint64_t ago) {
  const bool canBeListed = canBeKnown(directory, true);
  std::shared_ptr<Tree> last;  // goes after the lock
  const std::lock_guard guard(m_lock);
  if (!canBeListed) {
    m_walked.cannotBeKnown(directory.identity());
    return nullptr;
  }
  if (std::shared_ptr<Tree> tree = listed(directory.identity()))
    return tree;
  if (m_trees.size() >= kMostTrees && !(last = takeFromPlace(ago)))
    return nullptr;
  m_trees.push_front({directory.identity(), std::make_shared<Tree>(m_bytes), m_now});
  return m_trees.front().tree;
}

/// Under the lock.
std::shared_ptr<TreeRegistry::Tree> TreeRegistry::listed(const FileIdentity& identity) {
  const auto found = std::ranges::find(m_trees, identity, &Listed::identity);
  if (found == m_trees.end())
    return nullptr;
  m_trees.splice(m_trees.begin(), m_trees, found);
  m_trees.front().used = ++m_now;
  return m_trees.front().tree;
}

/// Under the lock. Returns the tree that gives its place to one that was searched so long ago; null
/// when all are searched as often. Of more trees than there are places, searched in turn, each
/// would otherwise drive out the next.
std::shared_ptr<TreeRegistry::Tree> TreeRegistry::takeFromPlace(std::uint64_t ago) {
  const auto isIdle = [](const Listed& it) {
    return it.tree->bytes == 0 && it.tree.use_count() == 1;
  };
  auto last = std::ranges::find_if(m_trees, isIdle);
  if (last == m_trees.end() && m_now - m_trees.back().used > 2 * ago)
    last = std::prev(m_trees.end());
  if (last == m_trees.end())
    return nullptr;
  std::shared_ptr<Tree> tree = std::move(last->tree);
  m_trees.erase(last);
  return tree;
}

std::optional<TreeRegistry::Matches> TreeRegistry::inTree(Tree& tree,
                                                          bool isWhole,
                                                          const SearchedDirectory& directory,
                                                          int depth,
                                                          const SoughtTails& tails) {
  std::optional<Matches> matches;
  {
    const std::lock_guard guard(tree.lock);
    try {
      if (prepare(tree, isWhole, directory))
        matches = tails.matches(tree.known->index(), tree.known->find(directory.identity()), depth);
    } catch (...) {
      drop(tree);  // it may be half done
      count(tree);
      throw;
    }
    count(tree);
  }
  m_answered += matches ? 1u : 0u;
  makeRoom(tree, indexSettings().maxBytes);
  return matches;
}

/// Returns true when the directory is known as it is now.
bool TreeRegistry::prepare(Tree& tree, bool isWhole, const SearchedDirectory& directory) {
  const std::optional<unsigned> user = rightsOfThread();
  if (!user || (tree.known && tree.user != *user))
    return false;
  tree.user = *user;
  if (tree.known && !tree.known->refresh(directory))
    drop(tree);
  else if (tree.known && tree.known->find(directory.identity()) != NameIndex::kNone)
    return true;
  if (!isDue(tree, isWhole, directory.identity()))
    return false;
  return build(tree, isWhole, directory);
}

/// Counts the scans that come before the index. An index that does not last is made ever less
/// often.
bool TreeRegistry::isDue(Tree& tree, bool isWhole, const FileIdentity& identity) const {
  if (indexSettings().use == IndexUse::kFromFirstScan)
    return true;
  if (!isWhole && tree.seenAlone.size() > kMostAlone)
    tree.seenAlone.clear();
  unsigned& scans = isWhole ? tree.scans : tree.seenAlone[identity];
  return scans != kNever && scans++ >= tree.scansBefore;
}

bool TreeRegistry::build(Tree& tree, bool isWhole, const SearchedDirectory& directory) {
  if (!canBeKnown(directory, isWhole)) {
    if (!isWhole)
      tree.seenAlone[directory.identity()] = kNever;
    return false;
  }
  const bool hasMany = tree.known && tree.known->rootCount() >= kMostAlone;
  if (!tree.known || isWhole || hasMany)
    tree.known = makeKnownDirectories(isWhole, indexSettings().maxBytes);
  if (tree.known->add(directory)) {
    ++m_built;
    return true;
  }
  drop(tree);
  forgetOldest(tree);
  return false;
}

void TreeRegistry::drop(Tree& tree) {
  tree.known.reset();
  tree.scans = 0;
  tree.seenAlone.clear();
  tree.scansBefore = std::min(2 * tree.scansBefore, kMostScansBefore);
  tree.uses = 0;
  ++m_dropped;
}

void TreeRegistry::count(Tree& tree) {
  const std::size_t bytes = tree.known ? tree.known->bytes() : 0;
  m_bytes += bytes - tree.bytes.exchange(bytes);  // less wraps around, and so does the sum
  tree.entries = tree.known ? tree.known->index().entryCount() : 0;
  if (tree.known && ++tree.uses == kUsesThatProve)
    tree.scansBefore = 1;
}

void TreeRegistry::makeRoom(const Tree& used, std::size_t maxBytes) {
  while (m_bytes > maxBytes && forgetOldest(used)) {
  }
}

/// Drops the index that was not used for longest, `used` left out. Returns false when there is none
/// that is free.
bool TreeRegistry::forgetOldest(const Tree& used) {
  std::unique_ptr<IKnownDirectories> forgotten;  // goes after the locks
  const std::lock_guard guard(m_lock);
  for (auto it = m_trees.rbegin(); it != m_trees.rend(); ++it) {
    Tree& tree = *it->tree;
    if (&tree == &used || tree.bytes == 0)
      continue;
    std::unique_lock held(tree.lock, std::try_to_lock);
    if (!held)
      continue;
    forgotten = std::move(tree.known);
    tree.scans = 0;
    count(tree);
    return true;
  }
  return false;
}

void TreeRegistry::clear() {
  std::list<Listed> trees;  // go after the lock
  {
    const std::lock_guard guard(m_lock);
    trees.swap(m_trees);
    m_walked.clear();
  }
  const std::lock_guard alone(m_alone.lock);
  m_alone.known.reset();
  m_alone.seenAlone.clear();
  m_alone.scansBefore = 1;
  count(m_alone);
}

IndexCounts TreeRegistry::counts() {
  const std::lock_guard guard(m_lock);
  IndexCounts counts{std::size_t{0}, m_alone.entries, m_bytes, m_built, m_dropped, m_answered};
  for (const Listed& listed : m_trees) {
    counts.entries += listed.tree->entries;
    counts.trees += listed.tree->bytes != 0 ? 1u : 0u;
  }
  return counts;
}

}  // namespace PAKU_3_1::internal
