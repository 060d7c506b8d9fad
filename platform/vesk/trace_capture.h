// Catches trace lines in tests.
//
//   vesk_1_8::TraceCapture capture(channel);
//   ... code that traces ...
//   EXPECT_EQ(capture.records().at(0).line, 931);

#pragma once

#include <memory>
#include <vector>

#include "vesk/log_info.h"
#include "vesk/sink.h"

namespace vesk_1_8 {

/// Turns a channel on, and collects every line of the process, until it is destroyed; then channel
/// and sink are as before. One at a time; any thread may trace.
class TraceCapture final {
 public:
  explicit TraceCapture(LogInfo& info);
  ~TraceCapture();

  TraceCapture(const TraceCapture&) = delete;
  TraceCapture& operator=(const TraceCapture&) = delete;

  /// Returns a copy of the lines so far, in the order written.
  std::vector<Record> records() const;

 private:
  class Collector;

  LogInfo& m_info;
  bool m_wasOn;
  std::shared_ptr<Collector> m_collector;
  std::shared_ptr<ISink> m_previousSink;
};

/// Keeps a channel off until it is destroyed.
class TraceSilence final {
 public:
  explicit TraceSilence(LogInfo& info);
  ~TraceSilence();

  TraceSilence(const TraceSilence&) = delete;
  TraceSilence& operator=(const TraceSilence&) = delete;

 private:
  LogInfo& m_info;
  bool m_wasOn;
};

}  // namespace vesk_1_8
