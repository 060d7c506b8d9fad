// The directories of one category, without duplicates.
//
// A list is reached from containers and iterator sources of several threads: its own lock guards
// the entries, a lock of the class the reference counts.

#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "core/lock.h"
#include "quiver/ref_count.h"

namespace QV_2_9 {

/// One search directory.
struct SearchDirEntry {
  std::wstring dir;   ///< As the caller gave it.
  bool recursive;     ///< Look into the tree below it too.
  bool highPriority;  ///< Look early.
};

class FilteredDirList final : public RefCountImpl<IQVObject> {
 public:
  FilteredDirList();

  /// Appends a directory. Returns false for null and for a directory that is there already, whose
  /// flags are raised instead.
  bool add(const wchar_t* dir, bool recursive, bool highPriority);
  void clear();
  /// Returns a copy of the entries, in the order they were added.
  std::vector<SearchDirEntry> entries();

 private:
  struct LessIgnoreCase {
    bool operator()(const std::wstring& a, const std::wstring& b) const;
  };

  QVLock m_lock;
  std::vector<SearchDirEntry> m_entries QV_GUARDED_BY(m_lock);
  // From the canonical absolute directory to its place in m_entries.
  std::map<std::wstring, std::size_t, LessIgnoreCase> m_index QV_GUARDED_BY(m_lock);
};

}  // namespace QV_2_9
