// The directories of one category, without duplicates.

#include "config/filtered_dir_list.h"

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

  const LockGuard guard(&m_lock);
  const auto known = m_index.find(key);
  if (known != m_index.end()) {
    SearchDirEntry& entry = m_entries[known->second];
    entry.recursive |= recursive;
    entry.highPriority |= highPriority;
    return false;
  }
  m_entries.push_back({dir, recursive, highPriority});
  m_index.emplace(key, m_entries.size() - 1);
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
