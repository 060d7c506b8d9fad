// Judges an answer while it comes: status, kind, size and pace.

#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "symsrv/fetch.h"

namespace symsrv_1_0::internal {

/// Watches the hops of one try; its limits on time hold for all of them together. The time that the
/// caller's progress object takes counts for none.
class HopWatcher final : public IHopSink {
 public:
  HopWatcher(const Limits& limits, Progress& progress, IFetchSink& sink);

  bool header(const HopHeader& header) override;
  bool write(const void* bytes, std::size_t count) override;
  bool tick() override;

  /// Returns what became of the hop.
  FetchResult judge(const HopResult& hop);

  /// Returns where the answer leads instead. Empty when it is no redirect.
  std::string takeRedirect();

  /// Returns true for an answer that may be another one soon; `retryAfter` tells how soon.
  bool isBusy() const { return m_isBusy; }
  int status() const { return m_header.status; }
  const std::string& retryAfter() const { return m_header.retryAfter; }

 private:
  using Clock = std::chrono::steady_clock;
  using Kind = FetchResult::Kind;

  bool stop(Kind kind, std::string reason);
  bool beginBody();
  bool isInTime(Clock::time_point now);
  bool keepsPace(Clock::time_point now);
  FetchResult judgeStatus() const;

  const Limits& m_limits;
  Progress& m_progress;
  IFetchSink& m_sink;
  Clock::time_point m_begin;
  Clock::time_point m_windowBegin;
  std::uint64_t m_windowBytes = 0;
  std::uint64_t m_received = 0;
  HopHeader m_header;
  bool m_hasBody = false;  // that of the file; others are passed over
  bool m_isBusy = false;
  std::optional<FetchResult> m_verdict;
};

}  // namespace symsrv_1_0::internal
