// Fills the directories of a search.

#include "load/search_setup.h"

namespace quiver_load {

using namespace QV_2_9;

namespace {

constexpr bool kTree = true;
constexpr bool kPlain = false;
constexpr bool kEarly = true;
constexpr bool kLate = false;

ObjectPtr<IEditableSearchDirContainer> lastingDirs(const Places& places,
                                                   const SymbolSources& symbols) {
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scSourceFiles, places.path("decoy").c_str(), kPlain, kEarly);
  dirs->addSearchDir(scBinaryFiles, places.path("decoy").c_str(), kTree, kEarly);
  dirs->addSearchDir(scSourceFiles, places.path("moving").c_str(), kTree, kEarly);
  dirs->addSearchDir(scSymbolFiles, symbols.storeElement().c_str(), kPlain, kEarly);
  dirs->addSearchDir(scSymbolFiles, symbols.steadyElement().c_str(), kPlain, kLate);
  dirs->addSearchDir(scSymbolFiles, places.path("moving").c_str(), kTree, kLate);
  dirs->addSearchDir(scAllFiles, places.path("still").c_str(), kTree, kLate);
  return dirs;
}

}  // namespace

SearchSetup::SearchSetup(const Places& places,
                         const SymbolSources& symbols,
                         const ObjectPtr<IEnvironmentInfo>& info,
                         ISearchJournal* journal) {
  m_chain->addContainer(lastingDirs(places, symbols));
  m_chain->addContainer(m_extra);
  m_env->setSearchDirs(m_chain);
  m_env->setEnvironmentInfo(info);
  m_search = journal ? createFileSearchWithJournal(m_env, journal) : IFileSearch::create(m_env);
}

bool SearchSetup::addContainer(const wchar_t* dir) {
  if (m_containers >= kMostContainers)
    return false;
  ++m_containers;
  const ObjectPtr<IEditableSearchDirContainer> more = IEditableSearchDirContainer::create();
  more->addSearchDir(scSourceFiles, dir, kTree, kEarly);
  return m_chain->addContainer(more);
}

}  // namespace quiver_load
