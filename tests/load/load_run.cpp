// Starts and ends the threads.

#include "load/load_run.h"

namespace quiver_load {

LoadRun::LoadRun(const Places& places,
                 const SymbolSources& symbols,
                 WorkCounts& counts,
                 Findings& findings,
                 unsigned seed)
    : m_shared(places, symbols),
      m_looking{places, symbols, counts, findings, m_shared, m_isLookingOver},
      m_changing{places, symbols, counts, findings, m_shared, m_isChangingOver},
      m_lasting{LoadSearchStarted(m_looking.frame()), LoadPolicy(m_looking.frame())},
      m_callbackChanger(m_changing, m_lasting, seed),
      m_searchChanger(m_changing, seed + 1),
      m_cacheCleaner(m_changing) {
  seed += 2;
  for (unsigned i = 0; i < kShared; ++i)
    m_lookers.push_back(std::make_unique<SharedLooker>(m_looking, seed++));
  for (unsigned i = 0; i < kOwn; ++i)
    m_lookers.push_back(std::make_unique<OwnLooker>(m_looking, seed++, m_lasting));
  for (int area = 0; area < Places::kAreas; ++area)
    m_fileChangers.emplace_back(m_changing, area, seed++);
}

void LoadRun::start() {
  for (const std::unique_ptr<Looker>& looker : m_lookers)
    m_lookingThreads.emplace_back([&looker] { looker->run(); });
  for (FileChanger& changer : m_fileChangers)
    m_changingThreads.emplace_back([&changer] { changer.run(); });
  m_changingThreads.emplace_back([this] { m_callbackChanger.run(); });
  m_changingThreads.emplace_back([this] { m_searchChanger.run(); });
  m_changingThreads.emplace_back([this] { m_cacheCleaner.run(); });
}

void LoadRun::join(std::vector<std::thread>& threads) {
  for (std::thread& thread : threads) thread.join();
  threads.clear();
}

void LoadRun::finish() {
  m_isLookingOver = true;
  join(m_lookingThreads);
  m_isChangingOver = true;
  join(m_changingThreads);
}

std::vector<std::uint64_t> LoadRun::lookupsOfEach() const {
  std::vector<std::uint64_t> counts;
  for (const std::unique_ptr<Looker>& looker : m_lookers) counts.push_back(looker->lookups());
  return counts;
}

}  // namespace quiver_load
