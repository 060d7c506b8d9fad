// Makes the shared search anew.

#include "load/shared_search.h"

#include <mutex>

#include "load/load_messages.h"

namespace quiver_load {
namespace {

/// Searches that run at once take references to it, so its count has a lock.
class SharedInfo final : public QV_2_9::RefCountImpl<QV_2_9::IEnvironmentInfo> {
 public:
  SharedInfo() : RefCountImpl(&s_lock) {}
  std::int32_t getOSType() override { return 2; }
  std::int32_t getExtraInfo() override { return 0; }

 private:
  static inline CountLock s_lock;
};

}  // namespace

SharedSearch::SharedSearch(const Places& places, const SymbolSources& symbols)
    : m_places(places), m_symbols(symbols), m_info(new SharedInfo) {
  replace();
}

/// What else refers to the old environment goes first, inside the gate: after it, the file search
/// has the only references.
void SharedSearch::replace() {
  QV_2_9::ObjectPtr<QV_2_9::IFileSearch> old;
  const std::unique_lock guard(m_gate);
  if (m_setup)
    old = m_setup->search();
  m_setup = std::make_unique<SearchSetup>(m_places, m_symbols, m_info, nullptr);
}

}  // namespace quiver_load
