// The order of the results is the substance here: tail by tail, exact before folded, as the walk
// goes.

#include "paku/tree_search.h"

#include <algorithm>
#include <utility>

namespace PAKU_3_1::internal {
namespace {

std::wstring entryOf(std::wstring directory, const std::wstring& name) {
  appendEntry(directory, name);
  return directory;
}

/// The components of a tail behind its first, below `first`.
std::wstring restBelow(std::wstring first, Tail tail) {
  for (const std::wstring& component : tail.subspan(1)) appendEntry(first, component);
  return first;
}

}  // namespace

bool TreeSearch::run(int depth) {
  if (!reportWholeNameHere())
    return false;
  std::vector<std::wstring> names;
  std::ranges::transform(
      m_tails, std::back_inserter(names), [](Tail tail) { return tail.front(); });
  bool goesOn = true;
  m_tree.visit(names, depth, [&](const NameMatch& match) { return goesOn = onMatch(match); });
  return goesOn && reportWaiting();
}

/// The first place of all, and often the only one: answered without reading any directory.
bool TreeSearch::reportWholeNameHere() const {
  const std::wstring below = restBelow(m_tails.front().front(), m_tails.front());
  return m_tree.kindOf(below) != EntryKind::kFile || m_found(m_tree.spelling(below));
}

bool TreeSearch::onMatch(const NameMatch& match) {
  const bool isLast = m_tails[match.index].size() == 1;
  if (isLast != (match.kind == EntryKind::kFile))
    return true;
  if (match.isExact && !addExact(match))
    return false;
  addFolded(match);
  return true;
}

bool TreeSearch::addExact(const NameMatch& match) {
  const std::wstring exact = restBelow(match.name, m_tails[match.index]);
  if (match.directory.kindOf(exact) != EntryKind::kFile)
    return true;
  std::wstring below = entryOf(match.directory.path(), match.directory.spelling(exact));
  if (match.index == 0)
    return m_found(below);
  m_waiting[match.index].exact.push_back(std::move(below));
  return true;
}

void TreeSearch::addFolded(const NameMatch& match) {
  std::vector<std::wstring> paths = {match.name};
  for (const std::wstring& component : m_tails[match.index].subspan(1)) {
    std::vector<std::wstring> longer;
    for (const std::wstring& path : paths)
      for (const std::wstring& spelling : match.directory.spellings(path, component))
        longer.push_back(entryOf(path, spelling));
    paths = std::move(longer);
  }
  for (const std::wstring& path : paths)
    if (match.directory.kindOf(path) == EntryKind::kFile)
      m_waiting[match.index].folded.push_back(entryOf(match.directory.path(), path));
}

bool TreeSearch::reportWaiting() const {
  return std::ranges::all_of(m_waiting, [&](const Waiting& waiting) {
    return std::ranges::all_of(waiting.exact, m_found) &&
           std::ranges::all_of(waiting.folded, m_found);
  });
}

}  // namespace PAKU_3_1::internal
