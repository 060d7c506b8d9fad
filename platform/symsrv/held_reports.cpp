// Copies texts that live no longer than a call.

#include "symsrv/held_reports.h"

namespace symsrv_1_0::internal {

HeldReports::HeldReports(const Report& report, IStoreWatcher* watcher)
    : m_report(report), m_watcher(watcher) {
  if (m_report)
    m_lineTaker = [this](const std::string& line) { m_lines.push_back(line); };
}

void HeldReports::onStore(const StoreReport& report) {
  m_stores.push_back(
      {report.store, report.place, report.identity, report.detail, report.outcome, report.bytes});
}

void HeldReports::release() const {
  for (const std::string& line : m_lines) m_report(line);
  for (const Held& held : m_stores)
    m_watcher->onStore({held.store.c_str(),
                        held.place.c_str(),
                        held.identity.c_str(),
                        held.outcome,
                        held.detail.c_str(),
                        held.bytes});
}

}  // namespace symsrv_1_0::internal
