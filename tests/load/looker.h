// One thread that looks up.

#pragma once

#include <atomic>
#include <cstdint>
#include <random>

#include "load/load_callbacks.h"
#include "load/shared_search.h"
#include "load/sought_files.h"

namespace quiver_load {

/// What all threads work with; borrowed.
struct Load {
  const Places& places;
  const SymbolSources& symbols;
  WorkCounts& counts;
  Findings& findings;
  SharedSearch& shared;
  const std::atomic<bool>& isOver;

  CallbackFrame frame() const { return {places, counts, findings}; }
};

class Looker {
 public:
  Looker(const Load& load, unsigned seed) : m_load(load), m_random(seed), m_files(load.places) {}
  virtual ~Looker() = default;

  /// Looks up until the load is over.
  virtual void run() = 0;

  /// Any thread may ask.
  std::uint64_t lookups() const { return m_lookups.load(std::memory_order_relaxed); }

 protected:
  void lookUp(QV_2_9::IFileSearch& search);

  const Load& m_load;
  std::minstd_rand m_random;

 private:
  QV_2_9::ObjectPtr<QV_2_9::IValidFile> find(QV_2_9::IFileSearch& search, const SoughtFile& sought);
  void count(const QV_2_9::ObjectPtr<QV_2_9::IValidFile>& answer);

  SoughtFiles m_files;
  std::atomic<std::uint64_t> m_lookups = 0;
};

/// Uses the search that others use at the same time.
class SharedLooker final : public Looker {
 public:
  using Looker::Looker;
  void run() override;
};

/// Makes searches of its own, one after the other, some with callbacks, some with a journal.
class OwnLooker final : public Looker {
 public:
  /// `lasting` callbacks are attached by several threads; they live until all searches are gone.
  struct Lasting {
    LoadSearchStarted started;
    LoadPolicy policy;
  };

  OwnLooker(const Load& load, unsigned seed, Lasting& lasting)
      : Looker(load, seed), m_lasting(lasting) {}
  void run() override;

 private:
  void useOneSetup();
  void lookUpSeveralTimes(SearchSetup& setup);
  void withOwnCallbacks(SearchSetup& setup);

  Lasting& m_lasting;
};

}  // namespace quiver_load
