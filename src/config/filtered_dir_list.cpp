// The directories of one category, without duplicates.

#include "config/filtered_dir_list.h"

#include <utility>

#include "os/path_utils.h"

namespace QV_2_9 {
namespace {

QVLock counterLock;

}  // namespace

bool FilteredDirList::LessIgnoreCase::operator()(const std::wstring& a,
                                                 const std::wstring& b) const {
  return compareIgnoreCase(a.c_str(), b.c_str()) < 0;
}

FilteredDirList::FilteredDirList() : RefCountImpl(&counterLock) {}

bool FilteredDirList::add(const wchar_t* dir, bool recursive, bool highPriority) {
  if (!dir)
    return false;
  // Outside the lock: this may ask the system.
  const std::wstring key = toCanonicalAbsolutePath(dir, true);

  SearchDirEntry entry = {dir, recursive, highPriority};

  const LockGuard guard(&m_lock);
  const auto [place, isNew] = m_index.try_emplace(key, m_entries.size());
  if (!isNew) {
    m_entries[place->second].recursive |= recursive;
    m_entries[place->second].highPriority |= highPriority;
    return false;
  }
  try {
    m_entries.push_back(std::move(entry));
  } catch (...) {
    m_index.erase(place);
    throw;
  }
  return true;
}

void FilteredDirList::clear() {
  const LockGuard guard(&m_lock);
  m_entries.clear();
  m_index.clear();
}

std::vector<SearchDirEntry> FilteredDirList::entries() {
  const LockGuard guard(&m_lock);
  return m_entries;
}

}  // namespace QV_2_9
