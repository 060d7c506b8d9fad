// Ctrl-C, which is a signal here.

#include <csignal>

#include <gtest/gtest.h>

#include "download_progress.h"

namespace quiver_tool {
namespace {

TEST(DownloadProgressPosix, TakesTheFirstInterruptForAWishToStop) {
  DownloadProgress progress(nullptr);
  progress.start(10);
  EXPECT_FALSE(progress.isCanceled());
  std::raise(SIGINT);
  EXPECT_TRUE(progress.isCanceled());
  progress.finish();
  EXPECT_TRUE(progress.wasInterrupted());
  EXPECT_TRUE(progress.isCanceled()) << "the next download is not wanted either";
}

TEST(DownloadProgressPosix, LeavesASecondInterruptToTheSystem) {
  const auto interruptTwice = [] {
    DownloadProgress progress(nullptr);
    progress.start(10);
    std::raise(SIGINT);
    std::raise(SIGINT);
  };
  EXPECT_EXIT(interruptTwice(), testing::KilledBySignal(SIGINT), "");
}

TEST(DownloadProgressPosix, PutsTheFormerHandlingBack) {
  std::signal(SIGINT, SIG_IGN);
  DownloadProgress progress(nullptr);
  progress.start(10);
  progress.finish();
  EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_IGN);
}

}  // namespace
}  // namespace quiver_tool
