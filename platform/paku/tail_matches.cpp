// From an entry upwards: how many components fit, and what that is a match of.

#include "paku/tail_matches.h"

#include <algorithm>
#include <utility>

namespace PAKU_3_1::internal {
namespace {

void append(NameString& path, NameView component) {
  if (!path.empty())
    path += TailMatch::kSeparator;
  path += component;
}

}  // namespace

NameString TailMatch::path() const {
  NameString path = directory;
  append(path, known);
  std::ranges::replace(path, kSeparator, kNameSeparator);
  return path;
}

SoughtTails::SoughtTails(const std::vector<Tail>& tails) : m_tailCount(tails.size()) {
  const std::wstring* end = nullptr;
  std::size_t length = 0;  // of the tail as a path
  for (std::size_t i = 0; i < tails.size(); ++i) {
    const Tail& tail = tails[i];
    if (tail.data() + tail.size() != end) {
      end = tail.data() + tail.size();
      m_groups.emplace_back();
      m_groups.back().components.reserve(tail.size());
      std::ranges::transform(tail, std::back_inserter(m_groups.back().components), soughtName);
      m_groups.back().tailOfLength.assign(tail.size() + 1, kNoTail);
      length = tail.size() - 1;
      for (const std::wstring& component : tail) length += component.size();
    } else {
      length -= tails[i - 1].front().size() + 1;
    }
    if (length < kLongestIndexedPath)  // no longer path is ever looked at
      m_groups.back().tailOfLength[tail.size()] = i;
  }
}

/// The matches of one group of tails.
class SoughtTails::Matching final {
 public:
  Matching(const NameIndex& index,
           NameIndex::Number root,
           int depth,
           const Group& group,
           std::vector<std::vector<TailMatch>>& matches)
      : m_index(index), m_root(root), m_depth(depth), m_group(group), m_matches(matches) {}

  void run() {
    const std::size_t last = m_group.components.size() - 1;
    for (std::size_t i = 0; i <= last; ++i) {
      const SoughtName& name = m_group.components[i];
      if (name.text.empty() || (i < last && !m_index.hasOpaqueCalled(name)))
        continue;
      m_index.forEachCalled(name, [&](NameIndex::Number entry) {
        const bool isDirectory = m_index.kind(entry) == NameIndex::Kind::kDirectory;
        const bool isOpaque = isDirectory ? m_index.openedAs(entry) == NameIndex::kNone
                                          : m_index.kind(entry) == NameIndex::Kind::kLink;
        if (i == last ? !isDirectory : isOpaque)
          climb(entry, i);
      });
    }
  }

 private:
  /// Adds what ends at component `at` with the entry, for as many components as fit.
  void climb(NameIndex::Number entry, std::size_t at) {
    std::size_t level = 0;
    if (m_index.rootOf(m_index.directoryOf(entry), level) != m_root)
      return;
    bool isExact = true;
    NameString known;
    for (std::size_t first = at;; --first) {
      const NameView name = m_index.name(entry);
      isExact = isExact && isSpelledAs(name, m_group.components[first].text);
      known.insert(0, known.empty() ? 0 : 1, TailMatch::kSeparator);
      known.insert(0, name);
      const NameIndex::Number directory = m_index.directoryOf(entry);
      if (m_depth < 0 || level <= static_cast<std::size_t>(m_depth))
        add(first, at, directory, known, isExact);
      entry = m_index.entryOf(directory);
      if (first == 0 || entry == NameIndex::kNone ||
          !m_index.isCalled(entry, m_group.components[first - 1]))
        return;
      --level;
    }
  }

  void add(std::size_t first,
           std::size_t at,
           NameIndex::Number directory,
           const NameString& known,
           bool isExact) {
    const std::size_t length = m_group.components.size() - first;
    const std::size_t tail = m_group.tailOfLength[length];
    if (tail != kNoTail)
      m_matches[tail].push_back(
          {m_index.path(directory, TailMatch::kSeparator), known, at + 1 - first, isExact});
  }

  const NameIndex& m_index;
  const NameIndex::Number m_root;
  const int m_depth;
  const Group& m_group;
  std::vector<std::vector<TailMatch>>& m_matches;
};

std::vector<std::vector<TailMatch>> SoughtTails::matches(const NameIndex& index,
                                                         NameIndex::Number root,
                                                         int depth) const {
  std::vector<std::vector<TailMatch>> matches(m_tailCount);
  for (const Group& group : m_groups) Matching(index, root, depth, group, matches).run();
  for (std::vector<TailMatch>& ofTail : matches) std::ranges::sort(ofTail);
  return matches;
}

bool SoughtTails::areForAnIndex() const {
  return std::ranges::none_of(m_groups, [](const Group& group) {
    return std::ranges::any_of(group.components,
                               [](const SoughtName& name) { return mayBeShortName(name.text); });
  });
}

std::span<const SoughtName> SoughtTails::components(std::size_t tail) const {
  for (const Group& group : m_groups) {
    const auto found = std::ranges::find(group.tailOfLength, tail);
    if (found != group.tailOfLength.end())
      return std::span(group.components)
          .last(static_cast<std::size_t>(found - group.tailOfLength.begin()));
  }
  return {};
}

}  // namespace PAKU_3_1::internal
