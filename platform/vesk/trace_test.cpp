// Scopes, and the lines written from them.

#include "vesk/trace.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "vesk/trace_capture.h"

namespace vesk_1_8 {
namespace {

class TraceTest : public testing::Test {
 protected:
  LogInfo m_info{"channel", "VESK_TEST_SWITCH"};
  TraceCapture m_capture{m_info};
};

class FailingSink final : public ISink {
 public:
  void write(const Record&) override { throw std::runtime_error("disk full"); }
};

// Has a sink in place for the time of a scope.
class ScopedSink final {
 public:
  explicit ScopedSink(std::shared_ptr<ISink> sink) : m_previous(setSink(std::move(sink))) {}
  ~ScopedSink() { setSink(m_previous); }

 private:
  std::shared_ptr<ISink> m_previous;
};

TEST_F(TraceTest, ScopeAloneWritesNothing) {
  {
    Trace trace(m_info);
    trace.init("ns::Class::function");
  }
  EXPECT_TRUE(m_capture.records().empty());
}

TEST_F(TraceTest, LineCarriesChannelScopeSourceAndNumber) {
  Trace trace(m_info);
  trace.init("ns::Class::function");
  trace.start("folder\\file", 931) << "Done";

  const std::vector<Record> records = m_capture.records();
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].channel, "channel");
  EXPECT_EQ(records[0].scope, "ns::Class::function");
  EXPECT_EQ(records[0].source, "folder\\file");
  EXPECT_EQ(records[0].line, 931);
  EXPECT_EQ(records[0].text, "Done");
}

TEST_F(TraceTest, TextsAreJoinedWithNothingInBetween) {
  Trace trace(m_info);
  trace.start("s", 1) << "narrow:" << L"wide:" << std::wstring(L"string") << ".";
  ASSERT_EQ(m_capture.records().size(), 1u);
  EXPECT_EQ(m_capture.records()[0].text, "narrow:wide:string.");
}

TEST_F(TraceTest, NullTextsWriteNothing) {
  const char* narrow = nullptr;
  const wchar_t* wide = nullptr;
  Trace trace(m_info);
  trace.start("s", 1) << "[" << narrow << wide << "]";
  ASSERT_EQ(m_capture.records().size(), 1u);
  EXPECT_EQ(m_capture.records()[0].text, "[]");
}

TEST_F(TraceTest, LineWithoutTextsIsStillALine) {
  Trace trace(m_info);
  trace.start("s", 1);
  ASSERT_EQ(m_capture.records().size(), 1u);
  EXPECT_EQ(m_capture.records()[0].text, "");
}

TEST_F(TraceTest, NullScopeAndSourceAreEmpty) {
  Trace trace(m_info);
  trace.init(nullptr);
  trace.start(nullptr, 1) << "text";
  ASSERT_EQ(m_capture.records().size(), 1u);
  EXPECT_EQ(m_capture.records()[0].scope, "");
  EXPECT_EQ(m_capture.records()[0].source, "");
}

TEST_F(TraceTest, LineIsWrittenWhenTheEventEnds) {
  Trace trace(m_info);
  {
    log::Event event = trace.start("s", 1);
    event << "text";
    EXPECT_TRUE(m_capture.records().empty());
  }
  EXPECT_EQ(m_capture.records().size(), 1u);
}

TEST_F(TraceTest, ChannelThatIsOffWritesNothing) {
  const TraceSilence silence(m_info);
  Trace trace(m_info);
  trace.start("s", 1) << "text" << L"text" << std::wstring(L"text");
  EXPECT_TRUE(m_capture.records().empty());
}

TEST_F(TraceTest, FailingSinkIsNotNoticed) {
  const ScopedSink failing(std::make_shared<FailingSink>());
  Trace trace(m_info);
  EXPECT_NO_THROW(trace.start("s", 1) << "text");
}

TEST(TraceCapture, PutsSwitchAndSinkBack) {
  LogInfo info("channel", "VESK_TEST_SWITCH");
  info.switchForTest(false);
  LogInfo outer("outer", "VESK_TEST_SWITCH");
  const TraceCapture outerCapture(outer);
  {
    const TraceCapture inner(info);
    EXPECT_NE(static_cast<const char*>(info.Option), nullptr);
    writeToSink({"inner", "", "", 1, ""});
  }
  EXPECT_EQ(static_cast<const char*>(info.Option), nullptr);
  writeToSink({"outer", "", "", 1, ""});
  ASSERT_EQ(outerCapture.records().size(), 1u);
  EXPECT_EQ(outerCapture.records()[0].channel, "outer");
}

TEST(TraceSilence, PutsTheSwitchBack) {
  LogInfo info("channel", "VESK_TEST_SWITCH");
  info.switchForTest(true);
  { const TraceSilence silence(info); }
  EXPECT_NE(static_cast<const char*>(info.Option), nullptr);
}

}  // namespace
}  // namespace vesk_1_8
