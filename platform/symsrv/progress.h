// Tells a caller's progress object what happens, and learns from it whether to go on.
//
// One start and one finish per download, whatever is tried for it. While a server keeps silent for
// long the start comes without a size, so that the caller can say that it has waited enough.

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "symsrv/symsrv_helper.h"

namespace symsrv_1_0::internal {

class Progress final {
 public:
  /// `callback` may be null.
  explicit Progress(IDownloadProgressCallback* callback) : m_callback(callback) {}
  /// Finishes when nobody did; an exception that is on its way stays the one.
  ~Progress();

  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// A transfer begins, of so many bytes. Calls nobody, as does `add`.
  void begin(std::optional<std::uint64_t> size);
  void add(std::uint64_t bytes) { m_bytes += bytes; }

  /// Passes on what there is to say. Returns false when the caller wants no more. May throw.
  bool tick();
  /// The same when a transfer is complete, also one that was too quick to be seen.
  bool complete();

  bool isCanceled() const { return m_isCanceled; }

  /// Returns who wants to hear of the stores; may be null.
  IStoreWatcher* watcher() const { return m_callback ? m_callback->storeWatcher() : nullptr; }

  /// Says that it is over, once, and only to who was told that it began.
  void finish();

 private:
  using Clock = std::chrono::steady_clock;

  void start(int size);
  void report(int value);

  IDownloadProgressCallback* m_callback;
  std::optional<Clock::time_point> m_waitingSince;
  Clock::time_point m_lastCall{};
  std::uint64_t m_bytes = 0;
  std::uint64_t m_size = 0;
  int m_lastValue = 0;
  bool m_hasTransfer = false;
  bool m_isStarted = false;
  bool m_isFinished = false;
  bool m_isCanceled = false;
};

}  // namespace symsrv_1_0::internal
