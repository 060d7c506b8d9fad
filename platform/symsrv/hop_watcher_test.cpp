// Whose time counts.

#include "symsrv/hop_watcher.h"

#include <thread>

#include <gtest/gtest.h>

namespace symsrv_1_0::internal {
namespace {

using std::chrono::milliseconds;

/// Takes its time over each call.
class SlowListener final : public IDownloadProgressCallback {
 public:
  void onStart(int, bool*) override { std::this_thread::sleep_for(milliseconds(120)); }
  void onProgress(int, bool*) override { onStart(0, nullptr); }
  void onFinish() override {}
};

class NoSink final : public IFetchSink {
 public:
  bool write(const void*, std::size_t) override { return true; }
  bool clear() override { return true; }
};

struct LimitRow {
  const char* name;
  milliseconds Limits::*limit;
  bool hasAnswer;
};

class LimitOf : public ::testing::TestWithParam<LimitRow> {
 protected:
  LimitOf() {
    m_limits.connect = milliseconds(0);
    m_limits.*GetParam().limit = milliseconds(60);
  }

  /// Begins the transfer, so that the next tick calls the listener.
  void answer(HopWatcher& watcher) {
    HopHeader header;
    header.status = 200;
    if (GetParam().hasAnswer)
      EXPECT_TRUE(watcher.header(header));
    else
      m_progress.begin(std::nullopt);
  }

  SlowListener m_listener;
  Progress m_progress{&m_listener};
  Limits m_limits;
  NoSink m_sink;
};

TEST_P(LimitOf, DoesNotCountTheListenersTime) {
  HopWatcher watcher(m_limits, m_progress, m_sink);
  answer(watcher);
  EXPECT_TRUE(watcher.tick());
  EXPECT_TRUE(watcher.tick());
}

TEST_P(LimitOf, CountsTheServersTime) {
  Progress silent(nullptr);
  HopWatcher watcher(m_limits, silent, m_sink);
  answer(watcher);
  std::this_thread::sleep_for(milliseconds(120));
  EXPECT_FALSE(watcher.tick());
}

const LimitRow kLimits[] = {
    {"Answer", &Limits::firstByte, false},
    {"Pace", &Limits::slowWindow, true},
    {"Request", &Limits::total, true},
};
INSTANTIATE_TEST_SUITE_P(Table, LimitOf, ::testing::ValuesIn(kLimits), [](const auto& row) {
  return std::string(row.param.name);
});

}  // namespace
}  // namespace symsrv_1_0::internal
