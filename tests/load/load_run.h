// All threads of one run.

#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <thread>
#include <vector>

#include "load/cache_cleaner.h"
#include "load/callback_changer.h"
#include "load/file_changer.h"
#include "load/looker.h"
#include "load/search_changer.h"

namespace quiver_load {

/// Eight threads that look up, of which five share one search, and those that change what they use.
class LoadRun final {
 public:
  LoadRun(const Places& places,
          const SymbolSources& symbols,
          WorkCounts& counts,
          Findings& findings,
          unsigned seed);
  ~LoadRun() { finish(); }

  LoadRun(const LoadRun&) = delete;
  LoadRun& operator=(const LoadRun&) = delete;

  void start();
  /// Lets all threads come to their end.
  void finish();

  /// Returns how many lookups each thread has done.
  std::vector<std::uint64_t> lookupsOfEach() const;

 private:
  static constexpr unsigned kShared = 5;
  static constexpr unsigned kOwn = 3;

  void join(std::vector<std::thread>& threads);

  std::atomic<bool> m_isLookingOver = false;
  std::atomic<bool> m_isChangingOver = false;
  SharedSearch m_shared;
  Load m_looking;  // over first: who changes a callback waits for those who call it
  Load m_changing;
  OwnLooker::Lasting m_lasting;
  std::vector<std::unique_ptr<Looker>> m_lookers;
  std::deque<FileChanger> m_fileChangers;
  CallbackChanger m_callbackChanger;
  SearchChanger m_searchChanger;
  CacheCleaner m_cacheCleaner;
  std::vector<std::thread> m_lookingThreads;
  std::vector<std::thread> m_changingThreads;
};

}  // namespace quiver_load
