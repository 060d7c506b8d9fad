// Catches trace lines in tests.

#include "vesk/trace_capture.h"

#include <mutex>

namespace vesk_1_8 {

class TraceCapture::Collector final : public ISink {
 public:
  void write(const Record& record) override {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_records.push_back(record);
  }

  std::vector<Record> records() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_records;
  }

 private:
  mutable std::mutex m_mutex;
  std::vector<Record> m_records;
};

TraceCapture::TraceCapture(LogInfo& info)
    : m_info(info),
      m_wasOn(info.Option != nullptr),
      m_collector(std::make_shared<Collector>()),
      m_previousSink(setSink(m_collector)) {
  m_info.switchForTest(true);
}

TraceCapture::~TraceCapture() {
  m_info.switchForTest(m_wasOn);
  setSink(m_previousSink);
}

std::vector<Record> TraceCapture::records() const {
  return m_collector->records();
}

TraceSilence::TraceSilence(LogInfo& info) : m_info(info), m_wasOn(info.Option != nullptr) {
  m_info.switchForTest(false);
}

TraceSilence::~TraceSilence() {
  m_info.switchForTest(m_wasOn);
}

}  // namespace vesk_1_8
