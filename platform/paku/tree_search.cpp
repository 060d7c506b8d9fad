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
  if (!m_tree.isOpen())
    return true;
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
  return m_tree.kindOf(below) != EntryKind::kFile || m_found(below);
}

bool TreeSearch::onMatch(const NameMatch& match) {
  const Tail tail = m_tails[match.index];
  const bool isLast = tail.size() == 1;
  if (isLast != (match.kind == EntryKind::kFile))
    return true;
  const std::wstring first = entryOf(match.directory, match.name);
  const std::wstring exact = match.isExact ? restBelow(first, tail) : std::wstring();
  if (match.isExact && !addExact(match.index, exact))
    return false;
  addFolded(match.index, first, exact);
  return true;
}

bool TreeSearch::addExact(std::size_t tail, const std::wstring& below) {
  if (m_tails[tail].size() > 1 && m_tree.kindOf(below) != EntryKind::kFile)
    return true;
  if (tail == 0)
    return m_found(below);
  m_waiting[tail].exact.push_back(below);
  return true;
}

void TreeSearch::addFolded(std::size_t tail, const std::wstring& first, const std::wstring& exact) {
  std::vector<std::wstring> paths = {first};
  for (const std::wstring& component : m_tails[tail].subspan(1)) {
    std::vector<std::wstring> longer;
    for (const std::wstring& path : paths)
      for (const std::wstring& spelling : m_tree.spellings(path, component))
        longer.push_back(entryOf(path, spelling));
    paths = std::move(longer);
  }
  std::ranges::copy_if(paths, std::back_inserter(m_waiting[tail].folded), [&](const auto& path) {
    return path != exact && m_tree.kindOf(path) == EntryKind::kFile;
  });
}

bool TreeSearch::reportWaiting() const {
  return std::ranges::all_of(m_waiting, [&](const Waiting& waiting) {
    return std::ranges::all_of(waiting.exact, m_found) &&
           std::ranges::all_of(waiting.folded, m_found);
  });
}

}  // namespace PAKU_3_1::internal
