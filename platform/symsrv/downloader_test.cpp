// Searches over a transport that answers as told.

#include "symsrv/downloader.h"

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/scripted_transport_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class DownloaderOf : public DownloadFixture {
 protected:
  /// Searches with servers that all answer the same.
  std::string from(const std::vector<std::string>& elements, std::deque<ScriptedAnswer> answers) {
    auto transport = std::make_unique<ScriptedTransport>(std::move(answers));
    const ScriptedTransport& asked = *transport;
    Downloader downloader(m_settings, std::move(transport), [this](const std::string& line) {
      m_reports.push_back(line);
    });
    ChainList list;
    for (const std::string& element : elements)
      EXPECT_EQ(list.add(element, m_settings.defaultStore), "");
    const SoughtResult sought = soughtFileOf(*FileSource::open(realFile("tiny64.exe")), "x");
    Progress silent(nullptr);
    std::string path = downloader.obtain(list.chains(), *sought.file, silent);
    m_requests = asked.m_requests;
    return path;
  }

  std::vector<std::string> m_requests;
};

TEST_F(DownloaderOf, PlainServersElsewhereSaysOnceWhatThatMeans) {
  const ScriptedAnswer missing{.status = 404};
  const auto warnings = [this] {
    std::size_t count = 0;
    for (const std::string& line : m_reports)
      count += line.find("anybody on the way") != std::string::npos;
    return count;
  };
  from({"srv*" + at("a") + "*http://h/x", "srv*" + at("b") + "*http://h/y"}, {missing});
  EXPECT_EQ(warnings(), 1u);
  m_reports.clear();
  from({"srv*" + at("c") + "*https://h/x", "srv*" + at("d") + "*http://localhost:8/y"}, {missing});
  EXPECT_EQ(warnings(), 0u);
}

TEST_F(DownloaderOf, SeveralServersAsksEachInTurn) {
  const std::string pdb = contentOf(realFile("tiny64.pdb"));
  const ScriptedAnswer missing{.status = 404};
  EXPECT_EQ(from({"srv*" + at("a") + "*https://h/x*https://i"},
                 {missing, missing, missing, missing, {.body = pdb}}),
            at("a/" + key()));
  EXPECT_THAT(m_requests,
              ElementsAre("https://h/x/index2.txt",
                          "https://h/x/" + key(),
                          "https://h/x/" + key("tiny64.pd_"),
                          "https://i/index2.txt",
                          "https://i/" + key()));
}

TEST_F(DownloaderOf, AServerWithTroubleInItsTiersAsksNoMore) {
  for (const int status : {400, 401, 500, 501}) {
    m_settings.limits.tries = 1;
    EXPECT_EQ(from({"srv*" + at("a") + "*https://h/x"}, {{.status = status}}), "");
    EXPECT_THAT(m_requests, ElementsAre("https://h/x/index2.txt")) << status;
  }
}

TEST_F(DownloaderOf, OneNameInTwoPlacesDeliversOnce) {
  m_settings.defaultStore = at("default");
  const std::string pdb = contentOf(realFile("tiny64.pdb"));
  EXPECT_EQ(from({"srv****https://h"}, {{.status = 404}, {.body = pdb}}), at("default/" + key()));
  EXPECT_THAT(filesIn("default"), ElementsAre(key()));
  EXPECT_THAT(reports(), Not(HasSubstr("cannot")));
}

struct AsideRow {
  const char* name;
  ScriptedAnswer answer;
  std::chrono::seconds expiry;
  bool isAskedAgain;
};

class TroubleOf : public DownloadFixture, public ::testing::WithParamInterface<AsideRow> {};

TEST_P(TroubleOf, SetsAServerAsideForAWhileOrForGood) {
  m_settings.limits.tries = 1;
  m_settings.serverExpiry = GetParam().expiry;
  m_settings.leastServerExpiry = std::chrono::seconds(0);
  auto transport = std::make_unique<ScriptedTransport>(std::deque{GetParam().answer});
  const ScriptedTransport& asked = *transport;
  Downloader downloader(m_settings, std::move(transport), {});
  ChainList list;
  list.add("srv*" + at("a") + "*https://h/x", {});
  const SoughtResult sought = soughtFileOf(*FileSource::open(realFile("tiny64.exe")), "x");
  Progress silent(nullptr);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(downloader.obtain(list.chains(), *sought.file, silent), "");
  EXPECT_EQ(asked.m_requests.size(), GetParam().isAskedAgain ? 2u : 1u);
}

constexpr std::chrono::seconds kAtOnce{0}, kLater{900};
const AsideRow kTroubles[] = {
    {"Busy", {.status = 503}, kLater, false},
    {"BusyAndExpired", {.status = 503}, kAtOnce, true},
    {"TooManyAndExpired", {.status = 429}, kAtOnce, true},
    {"BrokenAndExpired", {.status = 500}, kAtOnce, true},
    {"Unreachable", {.status = 0, .outcome = HopOutcome::kUnreachable}, kLater, false},
    {"UnreachableAndExpired", {.status = 0, .outcome = HopOutcome::kUnreachable}, kAtOnce, true},
    {"RetryAtOnce", {.status = 503, .retryAfter = "0"}, kLater, true},
    {"RetryLater", {.status = 503, .retryAfter = "100"}, kLater, false},
    {"RetryAfterTheCap", {.status = 503, .retryAfter = "99999999999999"}, kAtOnce, true},
    {"RetryOnADate", {.status = 503, .retryAfter = "Wed, 21 Oct 2099 07:28:00 GMT"}, kLater, false},
    {"Credentials", {.status = 401}, kAtOnce, false},
    {"CredentialsOfAProxy", {.status = 407}, kAtOnce, false},
    {"Untrusted", {.status = 0, .outcome = HopOutcome::kUntrusted}, kAtOnce, false},
};
INSTANTIATE_TEST_SUITE_P(Table, TroubleOf, ::testing::ValuesIn(kTroubles), [](const auto& row) {
  return std::string(row.param.name);
});

}  // namespace
}  // namespace symsrv_1_0::internal
