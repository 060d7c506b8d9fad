// Directory lists per category.

#include "config/search_dir_container.h"

#include "config/search_dir_iterator.h"

namespace QV_2_9 {
namespace {

bool isCategory(search_category_t category) {
  return category >= scBinaryFiles && category <= scAllFiles;
}

}  // namespace

ObjectPtr<ISearchDirIterator> EditableSearchDirContainer::createIterator(
    search_category_t category) {
  const ObjectPtr<FilteredDirList> list = findList(category);
  if (!list)
    return {};
  return new DefaultSearchDirIterator(list->entries());
}

// Intended: true says that the category is valid, not that the directory was stored.
bool EditableSearchDirContainer::addSearchDir(search_category_t category,
                                              const wchar_t* dir,
                                              bool recursive,
                                              bool highPriority) {
  const ObjectPtr<FilteredDirList> list = findOrCreateList(category);
  if (!list)
    return false;
  list->add(dir, recursive, highPriority);
  return true;
}

bool EditableSearchDirContainer::clearSearchDirs(search_category_t category) {
  const ObjectPtr<FilteredDirList> list = findOrCreateList(category);
  if (!list)
    return false;
  list->clear();
  return true;
}

ObjectPtr<FilteredDirList> EditableSearchDirContainer::findList(search_category_t category) {
  if (!isCategory(category))
    return {};
  const LockGuard guard(&m_lock);
  const auto found = m_lists.find(category);
  return found == m_lists.end() ? ObjectPtr<FilteredDirList>() : found->second;
}

ObjectPtr<FilteredDirList> EditableSearchDirContainer::findOrCreateList(
    search_category_t category) {
  if (!isCategory(category))
    return {};
  const LockGuard guard(&m_lock);
  ObjectPtr<FilteredDirList>& list = m_lists[category];
  if (!list)
    list = new FilteredDirList;
  return list;
}

ObjectPtr<IEditableSearchDirContainer> IEditableSearchDirContainer::create() {
  return new EditableSearchDirContainer;
}

}  // namespace QV_2_9
