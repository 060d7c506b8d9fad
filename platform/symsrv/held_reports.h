// Keeps what a search says of stores until it is known whether the search counts.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "symsrv/report.h"
#include "symsrv/symsrv_helper.h"

namespace symsrv_1_0::internal {

class HeldReports final : public IDownloadProgressCallback, public IStoreWatcher {
 public:
  /// Whoever is null or empty gets nothing later, and nothing is composed for him.
  HeldReports(const Report& report, IStoreWatcher* watcher);

  HeldReports(const HeldReports&) = delete;
  HeldReports& operator=(const HeldReports&) = delete;

  /// Takes the lines of the search; empty when nobody wants them.
  const Report& lines() const { return m_lineTaker; }

  void onStart(int, bool*) override {}
  void onProgress(int, bool*) override {}
  void onFinish() override {}
  IStoreWatcher* storeWatcher() override { return m_watcher ? this : nullptr; }
  void onStore(const StoreReport& report) override;

  /// Passes everything on.
  void release() const;

 private:
  struct Held {
    std::wstring store, place, identity, detail;
    StoreOutcome outcome;
    std::int64_t bytes;
  };

  const Report& m_report;
  IStoreWatcher* const m_watcher;
  Report m_lineTaker;
  std::vector<std::string> m_lines;
  std::vector<Held> m_stores;
};

}  // namespace symsrv_1_0::internal
