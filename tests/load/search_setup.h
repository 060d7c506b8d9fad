// One search with all that belongs to it. Its directories are its own: references to containers are
// counted without a lock.

#pragma once

#include "load/places.h"
#include "load/symbol_sources.h"
#include "quiver/quiver.h"

namespace quiver_load {

class SearchSetup final {
 public:
  static constexpr int kMostContainers = 6;

  /// `info` may be null; `journal` too.
  SearchSetup(const Places& places,
              const SymbolSources& symbols,
              const QV_2_9::ObjectPtr<QV_2_9::IEnvironmentInfo>& info,
              QV_2_9::ISearchJournal* journal);

  QV_2_9::IEditableSearchEnv& env() const { return *m_env; }
  const QV_2_9::ObjectPtr<QV_2_9::IFileSearch>& search() const { return m_search; }

  /// Directories that come and go; the ones that every lookup needs are in another container.
  QV_2_9::IEditableSearchDirContainer& extraDirs() const { return *m_extra; }
  /// Adds one more container to the chain. Returns false when there are enough.
  bool addContainer(const wchar_t* dir);

 private:
  QV_2_9::ObjectPtr<QV_2_9::IEditableSearchDirContainer> m_extra =
      QV_2_9::IEditableSearchDirContainer::create();
  QV_2_9::ObjectPtr<QV_2_9::ISearchDirChain> m_chain = QV_2_9::ISearchDirChain::create();
  QV_2_9::ObjectPtr<QV_2_9::IEditableSearchEnv> m_env = QV_2_9::IEditableSearchEnv::create();
  QV_2_9::ObjectPtr<QV_2_9::IFileSearch> m_search;
  int m_containers = 0;
};

}  // namespace quiver_load
