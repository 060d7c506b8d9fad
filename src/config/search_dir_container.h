// Directory lists per category.
//
// The container's lock guards the map only, and is released before a list is used: no operation
// holds it together with a list's lock.

#pragma once

#include <map>

#include "config/filtered_dir_list.h"
#include "core/lock.h"
#include "quiver/ref_count.h"
#include "quiver/search_dirs.h"

namespace QV_2_9 {

class EditableSearchDirContainer final : public RefCountImpl<IEditableSearchDirContainer> {
 public:
  ObjectPtr<ISearchDirIterator> createIterator(search_category_t category) override;
  bool addSearchDir(search_category_t category,
                    const wchar_t* dir,
                    bool recursive,
                    bool highPriority) override;
  bool clearSearchDirs(search_category_t category) override;

 private:
  // Both return null for a value that is no category.
  ObjectPtr<FilteredDirList> findList(search_category_t category);
  ObjectPtr<FilteredDirList> findOrCreateList(search_category_t category);

  std::map<search_category_t, ObjectPtr<FilteredDirList>> m_lists QV_GUARDED_BY(m_lock);
  QVLock m_lock;
};

}  // namespace QV_2_9
