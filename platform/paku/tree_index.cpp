// From the matches of an index to files: what the index does not know is looked up on disk, and
// what it knows is looked at once more.

#include "paku/tree_index.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "paku/searched_directory.h"
#include "paku/tail_matches.h"
#include "paku/tree_registry.h"

namespace PAKU_3_1::internal {
namespace {

NameString joined(const NameString& path, const NameString& component) {
  return path.empty() ? component : path + kNameSeparator + component;
}

/// Reports the matches of one tail.
class Report final {
 public:
  Report(const SearchedDirectory& place,
         const FoundBelow& found,
         std::span<const SoughtName> components)
      : m_place(place), m_found(found), m_components(components) {}

  bool exact(const TailMatch& match) const {
    if (!match.isExact)
      return true;
    NameString path = match.path();
    for (std::size_t i = match.unknownFrom; i < m_components.size(); ++i) {
      if (m_components[i].text.empty())
        return true;
      path = joined(path, m_place.spelling(path, m_components[i].text));
    }
    return report(path);
  }

  bool folded(const TailMatch& match) const {
    if (match.unknownFrom == m_components.size())
      return match.isExact || report(match.path());
    std::vector<NameString> paths = {match.path()};
    for (std::size_t i = match.unknownFrom; i < m_components.size(); ++i) {
      std::vector<NameString> longer;
      for (const NameString& path : paths)
        for (const NameString& entry : m_place.entriesCalled(path, m_components[i].text))
          longer.push_back(joined(path, entry));
      paths = std::move(longer);
    }
    return std::ranges::all_of(paths, [&](const NameString& path) { return report(path); });
  }

 private:
  bool report(const NameString& path) const {
    return !m_place.hasFile(path) || m_found(decodedName(path));
  }

  const SearchedDirectory& m_place;
  const FoundBelow& m_found;
  const std::span<const SoughtName> m_components;
};

}  // namespace

struct TreeIndex::State {
  TailSource source;
  std::optional<SoughtTails> tails;
  std::optional<FileIdentity> walkedTree;
};

TreeIndex::TreeIndex(TailSource tails)
    : m_state(std::make_unique<State>(State{std::move(tails), std::nullopt, std::nullopt})) {}

TreeIndex::~TreeIndex() = default;

TreeIndex::Answer TreeIndex::search(const std::wstring& directory,
                                    int depth,
                                    const FoundBelow& found) {
  m_state->walkedTree.reset();
  const std::optional<SearchedDirectory> place = SearchedDirectory::at(directory);
  if (!place)
    return Answer::kAll;  // a walk would find nothing either
  if (!m_state->tails)
    m_state->tails.emplace(m_state->source());
  if (!m_state->tails->areForAnIndex())
    return Answer::kUnknown;
  const auto matches = TreeRegistry::instance().matches(*place, depth, *m_state->tails);
  if (!matches) {
    if (depth == kWholeTree)
      m_state->walkedTree = place->identity();
    return Answer::kUnknown;
  }
  for (std::size_t i = 0; i < matches->size(); ++i) {
    const std::vector<TailMatch>& ofTail = (*matches)[i];
    if (ofTail.empty())
      continue;
    const Report report(*place, found, m_state->tails->components(i));
    if (!std::ranges::all_of(ofTail, [&](const TailMatch& match) { return report.exact(match); }) ||
        !std::ranges::all_of(ofTail, [&](const TailMatch& match) { return report.folded(match); }))
      return Answer::kEnded;
  }
  return Answer::kAll;
}

void TreeIndex::walked(std::uint64_t entries) {
  if (m_state->walkedTree)
    TreeRegistry::instance().walked(*m_state->walkedTree, entries);
}

}  // namespace PAKU_3_1::internal
