// Walks a copy of a list's entries.

#include "config/search_dir_iterator.h"

#include <utility>

namespace QV_2_9 {

DefaultSearchDirIterator::DefaultSearchDirIterator(std::vector<SearchDirEntry> entries)
    : m_entries(std::move(entries)) {}

void DefaultSearchDirIterator::reset() {
  m_position = 0;
}

bool DefaultSearchDirIterator::next() {
  if (m_position < m_entries.size())
    ++m_position;
  return m_position < m_entries.size();
}

bool DefaultSearchDirIterator::get(const wchar_t*& dir, bool& recursive, bool& highPriority) {
  if (m_position >= m_entries.size())
    return false;
  const SearchDirEntry& entry = m_entries[m_position];
  dir = entry.dir.c_str();
  recursive = entry.recursive;
  highPriority = entry.highPriority;
  return true;
}

}  // namespace QV_2_9
