#include "download_progress.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quiver_tool {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

class Terminal {
 public:
  std::function<void(const std::string&)> writer() {
    return [this](const std::string& bytes) { m_written.push_back(bytes); };
  }
  const std::vector<std::string>& written() const { return m_written; }

  /// What stands in the line after everything was written.
  std::string line() const {
    std::string cells;
    std::size_t at = 0;
    for (const std::string& bytes : m_written)
      for (const char c : bytes) {
        if (c == '\r') {
          at = 0;
        } else if (c == '\b') {
          --at;
        } else {
          cells.resize(std::max(cells.size(), at + 1), ' ');
          cells[at++] = c;
        }
      }
    return cells.substr(0, cells.find_last_not_of(' ') + 1);
  }

 private:
  std::vector<std::string> m_written;
};

TEST(ProgressLine, TellsHowMuchHasArrived) {
  EXPECT_EQ(progressLine(0, 3072), "downloading  0.0 of 3.0 MiB  0 %");
  EXPECT_EQ(progressLine(1536, 3072), "downloading  1.5 of 3.0 MiB  50 %");
  EXPECT_EQ(progressLine(512, 0), "downloading  0.5 MiB");
}

TEST(ProgressLine, StaysSensibleForOddNumbers) {
  EXPECT_EQ(progressLine(5000, 1024), "downloading  4.9 of 1.0 MiB  100 %");
  EXPECT_EQ(progressLine(-1, -1), "downloading  0.0 MiB");
  EXPECT_LE(progressLine(2147483647, 2147483647).size(), 60u);
}

TEST(DownloadProgress, WritesOneLineOverAndWipesItOutAtTheEnd) {
  Terminal terminal;
  DownloadProgress progress(terminal.writer());
  progress.start(2048);
  EXPECT_EQ(terminal.line(), progressLine(0, 2048));
  progress.progress(1024);
  EXPECT_EQ(terminal.line(), progressLine(1024, 2048));
  progress.finish();
  EXPECT_EQ(terminal.line(), "");
  EXPECT_THAT(terminal.written().back(), EndsWith("\r"));
}

TEST(DownloadProgress, WritesNothingTwice) {
  Terminal terminal;
  DownloadProgress progress(terminal.writer());
  progress.start(0);
  progress.progress(1);
  progress.progress(2);
  EXPECT_THAT(terminal.written(), ElementsAre("\rdownloading  0.0 MiB"));
}

TEST(DownloadProgress, ShowsNothingWithoutATerminal) {
  DownloadProgress progress(nullptr);
  progress.start(10);
  progress.progress(5);
  EXPECT_FALSE(progress.isCanceled());
  progress.finish();
  EXPECT_FALSE(progress.wasInterrupted());
}

TEST(DownloadProgress, ServesOneDownloadAfterTheOther) {
  Terminal terminal;
  DownloadProgress progress(terminal.writer());
  progress.start(1024);
  progress.finish();
  progress.start(0);
  EXPECT_EQ(terminal.line(), "downloading  0.0 MiB");
  progress.finish();
  EXPECT_EQ(terminal.line(), "");
}

}  // namespace
}  // namespace quiver_tool
