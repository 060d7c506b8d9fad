// Tells a caller's progress object what happens, and learns from it whether to go on.
//
// One start and one finish per download, whatever is tried for it. While a server keeps silent for
// long the start comes without a size, so that the caller can say that it has waited enough. Values
// never fall: what is tried again or copied further is told from where it passes what was told.

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

  /// While it lives no transfer begins: what comes meanwhile is not the file. The caller is asked
  /// whether to go on as always.
  class Preliminary final {
   public:
    explicit Preliminary(Progress& progress) : m_progress(progress) {
      m_progress.m_hasTransfer = false;
      m_progress.m_isPreliminary = true;
    }
    ~Preliminary() { m_progress.m_isPreliminary = false; }

    Preliminary(const Preliminary&) = delete;
    Preliminary& operator=(const Preliminary&) = delete;

   private:
    Progress& m_progress;
  };

  /// A transfer begins, of so many bytes. Calls nobody, as does `add`.
  void begin(std::optional<std::uint64_t> size);
  void add(std::uint64_t bytes) { m_bytes += m_isPreliminary ? 0 : bytes; }

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
  bool m_isPreliminary = false;
  bool m_isStarted = false;
  bool m_isFinished = false;
  bool m_isCanceled = false;
};

}  // namespace symsrv_1_0::internal
