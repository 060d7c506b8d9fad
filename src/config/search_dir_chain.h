// Several directory containers behind one.
//
// The chain's lock is held while members are added and while they are walked, so it comes before
// every lock of a member.

#pragma once

#include <list>

#include "core/lock.h"
#include "quiver/ref_count.h"
#include "quiver/search_dirs.h"

namespace QV_2_9 {

class SearchDirChain final : public RefCountImpl<ISearchDirChain> {
 public:
  ObjectPtr<ISearchDirIterator> createIterator(search_category_t category) override;
  bool addContainer(const ObjectPtr<ISearchDirContainer>& container) override;

 private:
  std::list<ObjectPtr<ISearchDirContainer>> m_containers QV_GUARDED_BY(m_lock);
  QVLock m_lock;
};

}  // namespace QV_2_9
