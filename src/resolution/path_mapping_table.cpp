// See path_mapping_table.h.

#include "resolution/path_mapping_table.h"

#include <algorithm>
#include <iterator>

namespace QV_2_9::internal {

void PathMappingTable::addByHand(const MappedPrefixes& prefixes) {
  const LockGuard guard(&m_lock);
  const auto firstLearned = std::ranges::find_if(m_rows, &PathMappingRow::isLearned);
  const auto known = std::find_if(m_rows.begin(), firstLearned, [&](const PathMappingRow& row) {
    return isSamePrefix(row.prefixes.recorded, prefixes.recorded);
  });
  if (known != firstLearned)
    *known = {prefixes, false, 0};
  else
    m_rows.insert(firstLearned, {prefixes, false, 0});
}

bool PathMappingTable::learn(const wchar_t* recorded, const wchar_t* local) {
  const SplitPath name = splitRecordedPath(recorded);
  const SplitPath file = splitLocalPath(local);
  const std::optional<MappedPrefixes> prefixes = prefixesOfCommonEnd(name, file);
  if (!prefixes)
    return false;
  const std::wstring place = toText(file);
  const LockGuard guard(&m_lock);
  const bool isKnown = std::ranges::any_of(m_rows, [&](const PathMappingRow& row) {
    return mappedPath(row.prefixes, name) == place ||
           (isSamePrefix(row.prefixes.recorded, prefixes->recorded) &&
            isSamePrefix(row.prefixes.local, prefixes->local));
  });
  if (isKnown)
    return true;
  const auto firstLearned = std::ranges::find_if(m_rows, &PathMappingRow::isLearned);
  const std::ptrdiff_t byHand = std::distance(m_rows.begin(), firstLearned);
  m_rows.insert(firstLearned, {*prefixes, true, 0});
  if (m_rows.size() - static_cast<std::size_t>(byHand) > kMostLearned)
    m_rows.pop_back();
  return true;
}

std::vector<std::wstring> PathMappingTable::placesOf(const wchar_t* recorded) {
  const SplitPath name = splitRecordedPath(recorded);
  std::vector<std::wstring> places;
  const LockGuard guard(&m_lock);
  for (const PathMappingRow& row : m_rows) {
    std::wstring place = mappedPath(row.prefixes, name);
    if (!place.empty() && std::ranges::find(places, place) == places.end())
      places.push_back(std::move(place));
  }
  return places;
}

void PathMappingTable::confirm(const wchar_t* recorded, const std::wstring& place) {
  const LockGuard guard(&m_lock);
  const std::vector<std::size_t> confirmed = rowsTo(recorded, place);
  auto next = std::ranges::find_if(m_rows, &PathMappingRow::isLearned);
  for (const std::size_t index : confirmed) {
    const auto row = m_rows.begin() + static_cast<std::ptrdiff_t>(index);
    ++row->confirmations;
    if (row >= next) {
      std::rotate(next, row, row + 1);
      ++next;
    }
  }
}

void PathMappingTable::refute(const wchar_t* recorded, const std::wstring& place) {
  const LockGuard guard(&m_lock);
  const std::vector<std::size_t> refuted = rowsTo(recorded, place);
  for (auto index = refuted.rbegin(); index != refuted.rend(); ++index) {
    const auto row = m_rows.begin() + static_cast<std::ptrdiff_t>(*index);
    if (row->isLearned)
      m_rows.erase(row);
  }
}

/// They are all found before the first row is touched: to find one may need more memory than there
/// is.
std::vector<std::size_t> PathMappingTable::rowsTo(const wchar_t* recorded,
                                                  const std::wstring& place) const {
  const SplitPath name = splitRecordedPath(recorded);
  std::vector<std::size_t> indexes;
  for (std::size_t i = 0; i < m_rows.size(); ++i)
    if (mappedPath(m_rows[i].prefixes, name) == place)
      indexes.push_back(i);
  return indexes;
}

void PathMappingTable::clear() {
  const LockGuard guard(&m_lock);
  m_rows.clear();
}

std::size_t PathMappingTable::size() {
  const LockGuard guard(&m_lock);
  return m_rows.size();
}

std::optional<PathMappingRow> PathMappingTable::row(std::size_t index) {
  const LockGuard guard(&m_lock);
  if (index >= m_rows.size())
    return std::nullopt;
  return m_rows[index];
}

}  // namespace QV_2_9::internal
