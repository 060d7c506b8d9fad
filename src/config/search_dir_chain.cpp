// Several directory containers behind one.

#include "config/search_dir_chain.h"

namespace QV_2_9 {
namespace {

void mergeInto(IEditableSearchDirContainer& merged,
               search_category_t category,
               ISearchDirContainer& member) {
  const ObjectPtr<ISearchDirIterator> iterator = member.createIterator(category);
  if (!iterator)
    return;
  const wchar_t* dir = nullptr;
  bool recursive = false;
  bool highPriority = false;
  for (iterator->reset(); iterator->get(dir, recursive, highPriority); iterator->next())
    if (dir)  // without a text it is no directory, and the merged list stays away
      merged.addSearchDir(category, dir, recursive, highPriority);
}

}  // namespace

// The merged container has no list until a member yields a directory, so an empty merge is a null
// pointer rather than an iterator without entries.
ObjectPtr<ISearchDirIterator> SearchDirChain::createIterator(search_category_t category) {
  const LockGuard guard(&m_lock);
  const ObjectPtr<IEditableSearchDirContainer> merged = IEditableSearchDirContainer::create();
  for (const ObjectPtr<ISearchDirContainer>& member : m_containers)
    mergeInto(*merged, category, *member);
  return merged->createIterator(category);
}

bool SearchDirChain::addContainer(const ObjectPtr<ISearchDirContainer>& container) {
  if (!container)
    return false;
  const LockGuard guard(&m_lock);
  m_containers.push_back(container);
  return true;
}

ObjectPtr<ISearchDirChain> ISearchDirChain::create() {
  return new SearchDirChain;
}

}  // namespace QV_2_9
