// Ctrl-C between two files, which is a signal here.

#include <csignal>

#include <gtest/gtest.h>

#include "interrupt.h"
#include "resolver.h"

namespace quiver_tool {
namespace {

std::vector<RecordedFile> sources(std::size_t count) {
  std::vector<RecordedFile> files(count);
  for (std::size_t i = 0; i < count; ++i) files[i].name = L"/qv/none/" + std::to_wstring(i) + L".c";
  return files;
}

TEST(ResolverPosix, StopsAtTheNextFileAndKeepsWhatWasDone) {
  ResolveWatcher watcher;
  watcher.beforeFile = [](const Resolution&, std::size_t next) {
    if (next == 2)
      std::raise(SIGINT);
  };
  const Resolution resolution = resolveFiles(ResolveOptions(), sources(5), watcher);
  EXPECT_TRUE(resolution.isInterrupted);
  ASSERT_EQ(resolution.files.size(), 5u);
  EXPECT_EQ(resolution.files[1].state, FileState::NotFound);
  EXPECT_EQ(resolution.files[2].state, FileState::NotTried);
  EXPECT_EQ(resolution.files[4].state, FileState::NotTried);
}

TEST(ResolverPosix, PutsTheFormerHandlingBack) {
  std::signal(SIGINT, SIG_IGN);
  resolveFiles(ResolveOptions(), sources(1), {});
  EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_IGN);
}

TEST(InterruptWatchPosix, TellsTheOuterOneWhatTheInnerOneNoted) {
  std::signal(SIGINT, SIG_IGN);
  {
    const InterruptWatch outer;
    {
      const InterruptWatch inner;
      std::raise(SIGINT);
    }
    EXPECT_TRUE(InterruptWatch::isInterrupted());
  }
  EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_IGN);
}

}  // namespace
}  // namespace quiver_tool
