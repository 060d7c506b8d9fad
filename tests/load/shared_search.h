// The search that most threads share. It is replaced now and then: whoever still has a reference to
// the old one drops the last and ends it with its environment.

#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <shared_mutex>

#include "load/gate.h"
#include "load/search_setup.h"

namespace quiver_load {

class SharedSearch final {
 public:
  SharedSearch(const Places& places, const SymbolSources& symbols);

  /// Call it inside the gate; keep the reference for as long as you like.
  QV_2_9::ObjectPtr<QV_2_9::IFileSearch> search() const { return m_setup->search(); }

  /// Stops all lookups for the time of the change.
  template <class Change>
  void change(const Change& change) {
    const std::unique_lock guard(m_gate);
    change(m_setup->env());
  }

  /// Directories may change while lookups run. One thread may call this.
  template <class Change>
  void changeDirs(const Change& change) {
    const std::shared_lock guard(m_gate);
    change(*m_setup);
  }

  void replace();

  Gate& gate() { return m_gate; }

 private:
  const Places& m_places;
  const SymbolSources& m_symbols;
  QV_2_9::ObjectPtr<QV_2_9::IEnvironmentInfo> m_info;
  Gate m_gate;
  std::unique_ptr<SearchSetup> m_setup;  // guarded by m_gate
};

}  // namespace quiver_load
