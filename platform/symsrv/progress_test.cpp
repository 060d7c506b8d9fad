// What a caller's progress object is told.

#include "symsrv/progress.h"

#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace symsrv_1_0::internal {
namespace {

using ::testing::ElementsAre;

class Listener final : public IDownloadProgressCallback {
 public:
  void onStart(int value, bool*) override { m_values = {value}; }
  void onProgress(int value, bool* cancel) override {
    m_values.push_back(value);
    *cancel = m_wantsNoMore;
  }
  void onFinish() override {}

  std::vector<int> m_values;  // the size first
  bool m_wantsNoMore = false;
};

void waitForTheNextCall() {
  std::this_thread::sleep_for(std::chrono::milliseconds(120));
}

TEST(Progress, ValuesNeverFallWhenATransferBeginsAnew) {
  Listener listener;
  Progress progress(&listener);
  progress.begin(3072);
  progress.add(3072);
  EXPECT_TRUE(progress.complete());
  progress.begin(3072);
  waitForTheNextCall();
  EXPECT_TRUE(progress.tick());
  progress.add(1024);
  EXPECT_TRUE(progress.complete());
  progress.add(3072);
  EXPECT_TRUE(progress.complete());
  EXPECT_THAT(listener.m_values, ElementsAre(3, 3, 3, 4));
}

TEST(Progress, AsksWhetherToGoOnAlsoWhenTheValueStays) {
  Listener listener;
  Progress progress(&listener);
  progress.begin(1024);
  progress.add(1024);
  EXPECT_TRUE(progress.complete());
  listener.m_wantsNoMore = true;
  progress.begin(1024);
  waitForTheNextCall();
  EXPECT_FALSE(progress.tick());
}

}  // namespace
}  // namespace symsrv_1_0::internal
