// The sinks that write text, and the process-wide sink.

#include "vesk/sink.h"

#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "vesk/trace.h"

#include "support/file_contents.h"
#include "support/temp_tree.h"

namespace vesk_1_8 {
namespace {

using quiver_test::contentOf;

const Record kRecord{"quiver", "ns::Class::function", "vcs\\folder/file", 931, "Done: C:\\a.dll"};
constexpr const char* kLine =
    "[quiver] ns::Class::function (vcs\\folder/file:931): Done: C:\\a.dll\n";

TEST(StderrSink, WritesOneFormattedLine) {
  const std::shared_ptr<ISink> sink = makeStderrSink();
  testing::internal::CaptureStderr();
  sink->write(kRecord);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), kLine);
}

TEST(StderrSink, EscapesWhatWouldBreakTheLine) {
  Record record = kRecord;
  record.text = "a\nb\r\x1B[2J\x7F é";
  const std::shared_ptr<ISink> sink = makeStderrSink();
  testing::internal::CaptureStderr();
  sink->write(record);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "[quiver] ns::Class::function (vcs\\folder/file:931): a\\x0Ab\\x0D\\x1B[2J\\x7F é\n");
}

TEST(StderrSink, TakesTextLiterally) {
  Record record = kRecord;
  record.text = "%v {} %n";
  const std::shared_ptr<ISink> sink = makeStderrSink();
  testing::internal::CaptureStderr();
  sink->write(record);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "[quiver] ns::Class::function (vcs\\folder/file:931): %v {} %n\n");
}

TEST(StderrSink, IsTheProcessSinkByDefault) {
  const std::shared_ptr<ISink> previous = setSink(nullptr);
  testing::internal::CaptureStderr();
  writeToSink(kRecord);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), kLine);
  setSink(previous);
}

TEST(FileSink, AppendsLinesThatAreOnDiskAtOnce) {
  const quiver_test::TempTree tree;
  const std::filesystem::path file = tree.path("trace.log");
  std::ofstream(file, std::ios::binary) << "earlier\n";
  const std::shared_ptr<ISink> sink = makeFileSink(file);
  ASSERT_NE(sink, nullptr);
  sink->write(kRecord);
  EXPECT_EQ(contentOf(file), std::string("earlier\n") + kLine);
  sink->write(kRecord);
  EXPECT_EQ(contentOf(file), std::string("earlier\n") + kLine + kLine);
}

TEST(FileSink, IsNullForAFileThatCannotBeOpened) {
  const quiver_test::TempTree tree;
  EXPECT_EQ(makeFileSink(tree.root()), nullptr);
}

TEST(Sink, SetSinkReturnsTheOneBefore) {
  const quiver_test::TempTree tree;
  const std::shared_ptr<ISink> first = makeFileSink(tree.path("first"));
  const std::shared_ptr<ISink> original = setSink(first);
  EXPECT_EQ(setSink(original), first);
}

// Lines longer than any buffer, from several threads at once.
TEST(Sink, LinesOfDifferentThreadsNeverMix) {
  constexpr int kThreads = 4;
  constexpr int kLines = 100;
  LogInfo info("channel", "VESK_TEST_SWITCH");
  info.switchForTest(true);
  const std::shared_ptr<ISink> previous = setSink(nullptr);
  testing::internal::CaptureStderr();

  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&info, i] {
      const std::string half(5000, static_cast<char>('a' + i));
      Trace trace(info);
      for (int line = 0; line < kLines; ++line) trace.start("s", i) << half.c_str() << half.c_str();
    });
  }
  for (std::thread& thread : threads) thread.join();

  std::istringstream output(testing::internal::GetCapturedStderr());
  setSink(previous);
  std::map<std::string, int> seen;
  for (std::string line; std::getline(output, line);) ++seen[line];
  ASSERT_EQ(seen.size(), static_cast<std::size_t>(kThreads));
  for (int i = 0; i < kThreads; ++i) {
    const std::string text(10000, static_cast<char>('a' + i));
    EXPECT_EQ(seen["[channel]  (s:" + std::to_string(i) + "): " + text], kLines);
  }
}

}  // namespace
}  // namespace vesk_1_8
