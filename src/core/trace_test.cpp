// The library's trace channel.

#include "core/trace.h"

#include <vector>

#include <gtest/gtest.h>

#include "vesk/trace_capture.h"

namespace QV_2_9::internal {
namespace {

const char* countedText(int& evaluations) {
  ++evaluations;
  return "text";
}

TEST(TraceChannel, IsOneChannelCalledQuiver) {
  EXPECT_STREQ(traceChannel().channel(), "quiver");
  EXPECT_EQ(&traceChannel(), &traceChannel());
}

TEST(TraceChannel, WritesALineWithTheFixedSource) {
  const vesk_1_8::TraceCapture capture(traceChannel());
  vesk_1_8::Trace trace(traceChannel());
  trace.init("QV_2_9::FileSearch::findFile");
  QV_TRACE(trace, 931) << L"Nothing found";

  const std::vector<vesk_1_8::Record> records = capture.records();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].channel, "quiver");
  EXPECT_EQ(records[0].scope, "QV_2_9::FileSearch::findFile");
  EXPECT_EQ(records[0].source, "vcs\\quiver\\src\\qv_search");
  EXPECT_EQ(records[0].line, 931);
  EXPECT_EQ(records[0].text, "Nothing found");
}

TEST(TraceChannel, EvaluatesNothingWhileOff) {
  const vesk_1_8::TraceCapture capture(traceChannel());
  const vesk_1_8::TraceSilence silence(traceChannel());
  int evaluations = 0;
  vesk_1_8::Trace trace(traceChannel());
  QV_TRACE(trace, 931) << countedText(evaluations);
  EXPECT_EQ(evaluations, 0);
  EXPECT_TRUE(capture.records().empty());
}

TEST(TraceChannel, EvaluatesOnceWhileOn) {
  const vesk_1_8::TraceCapture capture(traceChannel());
  int evaluations = 0;
  vesk_1_8::Trace trace(traceChannel());
  QV_TRACE(trace, 931) << countedText(evaluations);
  EXPECT_EQ(evaluations, 1);
}

}  // namespace
}  // namespace QV_2_9::internal
