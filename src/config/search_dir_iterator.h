// Walks a copy of a list's entries.

#pragma once

#include <cstddef>
#include <vector>

#include "config/filtered_dir_list.h"
#include "quiver/ref_count.h"
#include "quiver/search_dirs.h"

namespace QV_2_9 {

class DefaultSearchDirIterator final : public RefCountImpl<ISearchDirIterator> {
 public:
  explicit DefaultSearchDirIterator(std::vector<SearchDirEntry> entries);

  void reset() override;
  bool next() override;
  bool get(const wchar_t*& dir, bool& recursive, bool& highPriority) override;

 private:
  const std::vector<SearchDirEntry> m_entries;  // never changes: `get` hands out its texts
  std::size_t m_position = 0;
};

}  // namespace QV_2_9
