// What each answer of a server means, and where redirects lead.

#include "symsrv/fetch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "symsrv/scripted_transport_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using Kind = FetchResult::Kind;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

class TextSink final : public IFetchSink {
 public:
  bool write(const void* bytes, std::size_t count) override {
    m_text.append(static_cast<const char*>(bytes), count);
    return true;
  }
  bool clear() override {
    m_text.clear();
    return true;
  }

  std::string m_text;
};

class Fetch : public ::testing::Test {
 protected:
  Fetch() { m_settings.limits.betweenTries = std::chrono::milliseconds(1); }

  FetchResult from(const std::string& address, std::deque<ScriptedAnswer> answers) {
    ScriptedTransport transport(std::move(answers));
    Progress silent(nullptr);
    m_sink.clear();
    FetchResult result =
        symsrv_1_0::internal::fetch(transport, address, m_settings, silent, m_sink);
    m_requests = transport.m_requests;
    return result;
  }

  /// Returns where a redirect from `address` was looked for.
  std::string redirected(const std::string& address, const std::string& location) {
    EXPECT_EQ(from(address, {{.status = 302, .location = location}, {}}).kind, Kind::kDone)
        << location;
    return m_requests.back();
  }

  Settings m_settings;
  TextSink m_sink;
  std::vector<std::string> m_requests;
};

struct StatusRow {
  int status;
  Kind kind;
  std::size_t requests;
};

class StatusOf : public Fetch, public ::testing::WithParamInterface<StatusRow> {};

TEST_P(StatusOf, TellsWhatBecomesOfTheRequest) {
  const StatusRow& row = GetParam();
  const FetchResult result = from("http://h/a", {{.status = row.status}});
  EXPECT_EQ(result.kind, row.kind);
  EXPECT_EQ(result.status, row.status);
  EXPECT_THAT(result.reason, HasSubstr("status " + std::to_string(row.status)));
  EXPECT_THAT(m_requests, SizeIs(row.requests));
  EXPECT_EQ(m_sink.m_text, row.status == 200 ? "x" : "");
}

const StatusRow kStatuses[] = {
    {200, Kind::kDone, 1},    {204, Kind::kTrouble, 1}, {206, Kind::kTrouble, 1},
    {300, Kind::kTrouble, 1}, {302, Kind::kTrouble, 1}, {304, Kind::kTrouble, 1},
    {400, Kind::kTrouble, 1}, {401, Kind::kTrouble, 1}, {403, Kind::kMissing, 1},
    {404, Kind::kMissing, 1}, {407, Kind::kTrouble, 1}, {408, Kind::kTrouble, 2},
    {410, Kind::kMissing, 1}, {429, Kind::kTrouble, 2}, {500, Kind::kTrouble, 2},
    {501, Kind::kTrouble, 1}, {502, Kind::kTrouble, 2}, {503, Kind::kTrouble, 2},
    {504, Kind::kTrouble, 2},
};
INSTANTIATE_TEST_SUITE_P(Table, StatusOf, ::testing::ValuesIn(kStatuses), [](const auto& row) {
  return std::to_string(row.param.status);
});

struct RetryRow {
  const char* name;
  const char* retryAfter;
  std::size_t requests;
};

class RetryAfter : public Fetch, public ::testing::WithParamInterface<RetryRow> {};

TEST_P(RetryAfter, IsWaitedForWhenItIsShort) {
  m_settings.limits.tries = 3;
  EXPECT_EQ(from("http://h/a", {{.status = 503, .retryAfter = GetParam().retryAfter}}).kind,
            Kind::kTrouble);
  EXPECT_THAT(m_requests, SizeIs(GetParam().requests));
}

const RetryRow kRetries[] = {
    {"None", "", 3},
    {"AtOnce", "0", 3},
    {"Long", "3", 1},
    {"Longer", "4294967297", 1},
    {"WouldOverflowInMilliseconds", "9223372036854775807", 1},
    {"TooManyDigits", "99999999999999999999999999", 1},
    {"Negative", "-1", 1},
    {"ADate", "Wed, 21 Oct 2099 07:28:00 GMT", 1},
    {"Nonsense", "1x", 1},
};
INSTANTIATE_TEST_SUITE_P(Table, RetryAfter, ::testing::ValuesIn(kRetries), [](const auto& row) {
  return std::string(row.param.name);
});

TEST_F(Fetch, FollowsToAddressesThatEndInASlash) {
  EXPECT_EQ(redirected("http://h/a/b", "http://h/a/b/"), "http://h/a/b/");
  EXPECT_EQ(redirected("http://h/a/b", "/c/?q"), "http://h/c/?q");
  EXPECT_EQ(redirected("http://h/a/b", "http://other"), "http://other/");
  EXPECT_EQ(redirected("http://h/a/b", "c//"), "http://h/a/c//");
}

TEST_F(Fetch, TakesAnAddressWithASlashAtItsEndForAFolder) {
  EXPECT_EQ(
      from("http://h/a", {{.status = 301, .location = "/a/"}, {.status = 302, .location = "b"}, {}})
          .kind,
      Kind::kDone);
  EXPECT_THAT(m_requests, ElementsAre("http://h/a", "http://h/a/", "http://h/a/b"));
}

TEST_F(Fetch, ResolvesDotsInRelativeRedirects) {
  EXPECT_EQ(redirected("http://h/a/b", "../c"), "http://h/c");
  EXPECT_EQ(redirected("http://h/a/b", "./c"), "http://h/a/c");
  EXPECT_EQ(redirected("http://h/a/b", "../../../c"), "http://h/c");
  EXPECT_EQ(redirected("http://h/a/b", "c/../d/"), "http://h/a/d/");
  EXPECT_EQ(redirected("http://h/a/b", ".?x=../y"), "http://h/a/?x=../y");
  EXPECT_EQ(redirected("http://h/a/b", "/c/./d/.."), "http://h/c/");
}

TEST_F(Fetch, EscapesWhatRedirectsShouldHaveEscaped) {
  EXPECT_EQ(redirected("http://h/a", "/x y/\xC3\xA4?q=\t\x7F"), "http://h/x%20y/%C3%A4?q=%09%7F");
  EXPECT_EQ(redirected("http://h/a", "http://i/x y"), "http://i/x%20y");
  EXPECT_EQ(redirected("http://h/a", "//i/x y"), "http://i/x%20y");
  EXPECT_EQ(redirected("http://h/a/b", "x y"), "http://h/a/x%20y");
  EXPECT_EQ(redirected("http://h/a", "/x%20y%"), "http://h/x%20y%");
}

TEST_F(Fetch, RefusesTheFileWhenItRefusesARedirect) {
  for (const char* location :
       {"file:///etc/x", "/x\r\ny", "/x\ny", "http://h i/x", "//\xC3\xA4/x"}) {
    const FetchResult result = from("http://h/a", {{.status = 302, .location = location}});
    EXPECT_EQ(result.kind, Kind::kRefused) << location;
    EXPECT_THAT(m_requests, SizeIs(1)) << location;
  }
  EXPECT_EQ(from("https://h/a", {{.status = 302, .location = "http://h/a"}}).kind, Kind::kRefused);
}

TEST_F(Fetch, RefusesRedirectsToOtherSchemesAndDownToPlainHttp) {
  for (const char* location : {"file:///etc/hostname", "ftp://h/x", "http:x", "data:,x", "//"})
    EXPECT_THAT(from("http://h/a", {{.status = 302, .location = location}}).reason,
                HasSubstr("not supported"))
        << location;
  EXPECT_THAT(from("https://h/a", {{.status = 302, .location = "http://h/a"}}).reason,
              HasSubstr("from https to http"));
  EXPECT_THAT(from("http://h/a",
                   {{.status = 302, .location = "https://h/a"},
                    {.status = 302, .location = "http://h/b"},
                    {}})
                  .reason,
              HasSubstr("from https to http"));
  EXPECT_THAT(m_requests, SizeIs(2));
}

TEST_F(Fetch, SendsCredentialsToTheirOwnOriginAlone) {
  const auto all = [this](const char* location) {
    from("https://me:pw@h/a", {{.status = 307, .location = location}, {}});
    return m_requests;
  };
  EXPECT_THAT(all("/b"), ElementsAre("me:pw at https://h/a", "me:pw at https://h/b"));
  EXPECT_THAT(all("https://H:443/b").back(), HasSubstr("me:pw at "));
  EXPECT_EQ(all("https://h:444/b").back(), "https://h:444/b");
  EXPECT_EQ(all("https://other/b").back(), "https://other/b");
  EXPECT_EQ(all("https://x:y@other/b").back(), "https://other/b");
  EXPECT_EQ(all("//other/b").back(), "https://other/b");
}

TEST_F(Fetch, EndsRedirectsAfterFive) {
  EXPECT_THAT(from("http://h/a", {{.status = 302, .location = "/a"}}).reason,
              HasSubstr("redirected too often"));
  EXPECT_THAT(m_requests, SizeIs(6));
}

TEST_F(Fetch, TriesOnceMoreWhatWasCutOff) {
  const ScriptedAnswer cutOff{.body = "half", .outcome = HopOutcome::kCutOff};
  EXPECT_EQ(from("http://h/a", {cutOff, {.body = "whole"}}).kind, Kind::kDone);
  EXPECT_EQ(m_sink.m_text, "whole");
  EXPECT_EQ(from("http://h/a", {cutOff}).reason, "cut off");
  EXPECT_THAT(m_requests, SizeIs(2));
}

TEST_F(Fetch, BelievesNoLengthAboveItsLimit) {
  for (const std::uint64_t length : {(std::uint64_t{4} << 30) + 1, ~std::uint64_t{0}}) {
    const FetchResult result = from("http://h/a", {{.contentLength = length}});
    EXPECT_EQ(result.kind, Kind::kRefused);
    EXPECT_EQ(result.reason, "larger than the limit");
  }
  EXPECT_EQ(from("http://h/a", {{.contentLength = 2}}).reason, "cut off");
  EXPECT_EQ(from("http://h/a", {{.contentLength = 0}}).reason, "cut off");
  EXPECT_EQ(from("http://h/a", {{.outcome = HopOutcome::kCutOff}}).reason, "cut off");
}

}  // namespace
}  // namespace symsrv_1_0::internal
