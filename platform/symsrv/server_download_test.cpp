// Servers that work, servers that do not, and servers that mean harm.

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

using std::chrono::milliseconds;
using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

class ServerDownload : public DownloadFixture {
 protected:
  ServerDownload() { serve(); }

  void expectRight(const std::string& path, const std::string& where = "cache") const {
    EXPECT_EQ(path, at(where + "/" + key())) << reports();
    EXPECT_TRUE(path.empty() || contentOf(path) == contentOf(realFile("tiny64.pdb")));
    EXPECT_EQ(m_progress.m_started, m_progress.m_finished);
  }
};

class GoodWay : public ServerDownload, public ::testing::WithParamInterface<const char*> {};

TEST_P(GoodWay, BringsTheFile) {
  expectRight(obtainFrom(GetParam()));
  EXPECT_THAT(filesIn("cache"), ElementsAre(key()));
  EXPECT_EQ(m_progress.m_started, 1);
  EXPECT_EQ(m_progress.m_last, 72);
}

INSTANTIATE_TEST_SUITE_P(Ways,
                         GoodWay,
                         ::testing::Values("good",
                                           "chunked",
                                           "without-length",
                                           "redirect-1",
                                           "redirect-5",
                                           "to-other-host",
                                           "to-slash",
                                           "to-relative",
                                           "to-raw",
                                           "endless-tiers",
                                           "e503-once",
                                           "good?secret=1",
                                           "good/"));

struct BadWayRow {
  const char* way;
  const char* reason;
  bool isServersFault;                                 // then it is not asked again
  std::chrono::milliseconds Limits::*limit = nullptr;  // the one that ends it
};

class BadWay : public ServerDownload, public ::testing::WithParamInterface<BadWayRow> {};

TEST_P(BadWay, EndsSoonWithTheReasonAndTheCacheAsBefore) {
  // The time for an answer begins when the time for a connection is over.
  if (GetParam().limit)
    m_settings.limits.*GetParam().limit = m_settings.limits.connect = milliseconds(200);
  EXPECT_EQ(obtainFrom(GetParam().way), "");
  EXPECT_THAT(reports(), HasSubstr(GetParam().reason));  // what ended it, before a server does
  EXPECT_THAT(filesIn("cache"), IsEmpty());
  EXPECT_EQ(m_progress.m_started, m_progress.m_finished);

  m_reports.clear();
  const std::size_t asked = requests().size();
  EXPECT_EQ(obtainFrom(GetParam().way), "");
  EXPECT_EQ(requests().size(), asked);
  EXPECT_THAT(reports(),
              HasSubstr(GetParam().isServersFault ? "left alone" : "was missing a while ago"));
}

void PrintTo(const BadWayRow& row, std::ostream* out) {
  *out << row.way;
}

const BadWayRow kBadWays[] = {
    {"cut-without-length", "damaged or cut off", false},
    {"endless", "larger than the limit", false},
    {"huge-length", "larger than the limit", false},
    {"drip", "too slow", true, &Limits::slowWindow},
    {"drip-headers", "no answer within", true, &Limits::firstByte},
    {"hang", "no answer within", true, &Limits::firstByte},
    {"hang-in-body", "too slow", true, &Limits::slowWindow},
    {"refuse", "", true},
    {"nonsense", "", true},
    {"wrong", "GUID differs", false},
    {"html", "page of text", false},
    {"html-as-file", "page of text", false},
    {"html-everywhere", "page of text", false},
    {"empty", "empty", false},
    {"gzip", "gzip", false},
    {"bomb", "larger than the limit", false},
    {"lying-bomb", "unknown format", false},
    {"cut-cabinet", "damaged or cut off", false},
    {"damaged-cabinet", "damaged cabinet", false},
    {"wrong-cabinet", "not a cabinet of one file", false},
    {"missing", "status 404", false},
    {"loop", "redirected too often", true},
    {"redirect-6", "redirected too often", true},
    {"to-file", "not supported", false},
    {"to-ftp", "not supported", false},
    {"e500", "status 500", true},
    {"e503-later", "status 503", true},
    {"e401", "status 401", true},
    {"e403", "status 403", false},
};
INSTANTIATE_TEST_SUITE_P(Table, BadWay, ::testing::ValuesIn(kBadWays), [](const auto& row) {
  std::string name = row.param.way;
  std::erase(name, '-');
  return name;
});

TEST_F(ServerDownload, WhatIsCutOffIsTriedTwiceAndTakenForNothingElse) {
  EXPECT_EQ(obtainFrom("cut-length"), "");
  EXPECT_THAT(requests(),
              ElementsAre(StartsWith("/cut-length/index2.txt "),
                          StartsWith("/cut-length/" + key() + " "),
                          StartsWith("/cut-length/" + key() + " ")));
  EXPECT_THAT(reports(), HasSubstr("cut off"));
  EXPECT_THAT(filesIn("cache"), IsEmpty());
  m_reports.clear();
  EXPECT_EQ(obtainFrom("cut-length"), "");
  EXPECT_THAT(requests(), SizeIs(5)) << "the file is asked for again";
  EXPECT_THAT(reports(), Not(AnyOf(HasSubstr("missing"), HasSubstr("left alone"))));
}

TEST_F(ServerDownload, CompressedFilesAreAskedForWhenPlainOnesAreMissing) {
  expectRight(obtainFrom("compressed"));
  EXPECT_THAT(filesIn("cache"), ElementsAre(key()));
}

TEST_F(ServerDownload, StoresInTheMiddleKeepWhatIsCompressed) {
  expectRight(obtain({"srv*" + at("a") + "*" + at("b") + "*" + address("compressed")}), "a");
  EXPECT_THAT(filesIn("a"), ElementsAre(key()));
  EXPECT_THAT(filesIn("b"), ElementsAre(key("tiny64.pd_")));
}

TEST_F(ServerDownload, OneStoreThatIsAServerKeepsItsFilesInTheDefaultStore) {
  expectRight(obtain({"srv*" + address("good")}), "default");
}

TEST_F(ServerDownload, OneStoreThatIsAServerIsAskedOnceForAFile) {
  for (int i = 0; i < 2; ++i) {
    expectRight(obtain({"srv*" + address("good")}), "default");
    EXPECT_THAT(requests(), SizeIs(2)) << "the tiers and the file";
    forget();
  }
}

TEST_F(ServerDownload, AServerWhoseFilesNobodyCanKeepIsNotAsked) {
  m_settings.defaultStore = "";
  EXPECT_EQ(obtain({"srv*" + address("good")}), "");
  EXPECT_THAT(reports(), HasSubstr("there is no default store; name a cache"));
  forget();
  m_settings.defaultStore = "relative";
  EXPECT_EQ(obtain({"srv*" + address("good")}), "");
  EXPECT_THAT(reports(), HasSubstr("no store can take its files"));
  EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(ServerDownload, StoresInTheMiddleGetACopy) {
  expectRight(obtain({"srv*" + at("a") + "*" + at("b") + "*" + address("good")}), "a");
  EXPECT_THAT(filesIn("b"), ElementsAre(key()));
}

TEST_F(ServerDownload, WhatIsCachedIsNotAskedFor) {
  expectRight(obtainFrom("good"));
  const std::size_t asked = requests().size();
  expectRight(obtainFrom("good"));
  EXPECT_EQ(requests().size(), asked);
}

TEST_F(ServerDownload, WhatIsDamagedInTheCacheIsFetchedAnew) {
  file("cache", "other/tiny64.pdb");
  expectRight(obtainFrom("good"));
}

TEST_F(ServerDownload, AsksInTheOrderOfStores) {
  expectRight(obtain({"srv*" + at("cache") + "*" + address("e403") + "*" + address("good")}));
  EXPECT_THAT(requests(),
              ElementsAre(StartsWith("/e403/index2.txt "),
                          StartsWith("/e403/" + key() + " "),
                          StartsWith("/e403/" + key("tiny64.pd_") + " "),
                          StartsWith("/good/index2.txt "),
                          StartsWith("/good/" + key() + " ")));
}

TEST_F(ServerDownload, KeysInLowerCaseAreAskedForLast) {
  m_settings.looksInLowerCase = true;
  EXPECT_EQ(obtainFrom("missing"), "");
  EXPECT_THAT(requests(), SizeIs(5)) << "the tiers, the file and its compressed form, twice";
  EXPECT_THAT(requests()[1], StartsWith("/missing/" + key() + " "));
  EXPECT_THAT(requests()[3], StartsWith("/missing/" + toLower(key()) + " "));
}

TEST_F(ServerDownload, MissesAreRememberedOnDiskForOtherProcesses) {
  EXPECT_EQ(obtainFrom("missing"), "");
  EXPECT_THAT(requests(), SizeIs(3));
  EXPECT_THAT(filesIn("cache"), IsEmpty());
  forget();
  EXPECT_EQ(obtainFrom("missing"), "");
  EXPECT_THAT(requests(), SizeIs(3));
  EXPECT_EQ(obtainFrom("missing", "tiny32.exe"), "");
  EXPECT_THAT(requests(), SizeIs(6));
}

TEST_F(ServerDownload, MissesExpire) {
  m_settings.missExpiry = std::chrono::seconds(0);
  obtainFrom("missing");
  obtainFrom("missing");
  EXPECT_THAT(requests(), SizeIs(5)) << "the tiers are asked for once";
}

TEST_F(ServerDownload, DoubtfulMissesAreNotKeptOnDisk) {
  for (const char* way : {"e403", "missing?sas=secret", "html"}) {
    forget();
    obtainFrom(way);
    const std::size_t asked = requests().size();
    forget();
    obtainFrom(way);
    EXPECT_GT(requests().size(), asked) << way;
  }
}

TEST_F(ServerDownload, AFileThatTheCacheDidNotTakeIsNotMissing) {
  m_progress.m_isWatching = true;
  for (const char* store : {"cache/", "default/"}) m_tree.addFile(store + key() + "/in the way");
  EXPECT_EQ(obtainFrom("good"), "");
  EXPECT_THAT(reports(), HasSubstr("cannot be written"));
  EXPECT_EQ(m_progress.m_stores.back().outcome, StoreOutcome::kFailed);
  EXPECT_THAT(requests(), SizeIs(2)) << "the compressed file could not be written either";
  std::filesystem::remove_all(at("cache"));
  expectRight(obtainFrom("good"));
}

TEST_F(ServerDownload, TheQuestionForTiersLeavesTheStartToTheFile) {
  expectRight(obtainFrom("endless-tiers"));
  EXPECT_EQ(m_progress.m_size, 72);
}

TEST_F(ServerDownload, CredentialsGoToTheirHostAlone) {
  const auto from = [this](const std::string& way) {
    forget();
    std::filesystem::remove_all(at("cache"));
    expectRight(obtain({"srv*" + at("cache") + "*" + address(way, "me:pass%20word")}));
    return requests().back();
  };
  EXPECT_THAT(from("good"), HasSubstr("Authorization: Basic bWU6cGFzcyB3b3Jk"));
  EXPECT_THAT(from("redirect-1"), HasSubstr("Authorization"));
  EXPECT_THAT(from("to-other-host"), Not(HasSubstr("Authorization")));
  EXPECT_THAT(from("to-injected"), Not(HasSubstr("Authorization")));
  EXPECT_THAT(reports(), Not(HasSubstr("pass")));
}

TEST_F(ServerDownload, QueriesStayLastAndAreNotReported) {
  expectRight(obtain({"srv*" + at("cache") + "*" + address("good?sas=secret")}));
  EXPECT_THAT(requests(), Contains(StartsWith("/good/" + key() + "?sas=secret ")));
  EXPECT_THAT(reports(), Not(HasSubstr("secret")));
}

TEST_F(ServerDownload, TwentyLookupsAtADeadServerCostOneLimit) {
  m_settings.limits.firstByte = m_settings.limits.connect = milliseconds(200);
  for (int i = 0; i < 20; ++i)
    EXPECT_EQ(obtainFrom("hang", i % 2 ? "tiny32.exe" : "tiny64.exe"), "");
  EXPECT_THAT(requests(), SizeIs(1));
}

TEST_F(ServerDownload, AServerThatDoesNotListenIsSetAside) {
  EXPECT_EQ(obtain({"srv*" + at("cache") + "*http://127.0.0.1:1/x"}), "");
  m_reports.clear();
  EXPECT_EQ(obtain({"srv*" + at("cache") + "*http://127.0.0.1:1/x"}), "");
  EXPECT_THAT(reports(), HasSubstr("left alone"));
}

TEST_F(ServerDownload, ATotalLimitEndsWhatIsOnlySlow) {
  m_settings.limits.total = milliseconds(50);
  EXPECT_EQ(obtainFrom("steady"), "");
  EXPECT_THAT(reports(), HasSubstr("not done within"));
}

TEST_F(ServerDownload, IsCanceledWhileTheServerKeepsSilent) {
  m_progress.m_cancelAfter = 0;
  EXPECT_EQ(obtainFrom("hang"), "");
  EXPECT_EQ(m_progress.m_started, 1);
  EXPECT_EQ(m_progress.m_size, 0);
  EXPECT_EQ(m_progress.m_finished, 1);
  EXPECT_THAT(reports(), HasSubstr("canceled")) << "not by a limit";
}

TEST_F(ServerDownload, IsCanceledInTheMiddleAndTakesNothingAmiss) {
  m_progress.m_cancelAfter = 0;
  EXPECT_EQ(obtainFrom("steady"), "");
  EXPECT_EQ(m_progress.m_finished, 1);
  EXPECT_EQ(m_progress.m_size, 72);
  EXPECT_THAT(filesIn("cache"), IsEmpty());
  m_progress = ProgressRecorder();
  expectRight(obtainFrom("steady"));
}

TEST_F(ServerDownload, ExceptionsOfTheProgressObjectPassThrough) {
  m_progress.m_throwAfter = 0;
  EXPECT_THROW(obtainFrom("steady"), std::runtime_error);
  EXPECT_EQ(m_progress.m_finished, 1);
  EXPECT_THAT(filesIn("cache"), IsEmpty());
  m_progress = ProgressRecorder();
  expectRight(obtainFrom("steady"));
}

TEST_F(ServerDownload, OneKeyIsRequestedOnceByManyThreads) {
  Settings settings = m_settings;
  const QV_2_9::ObjectPtr<ISymSrvHelper> helper(new SymSrvHelper(settings, makeTransport(), {}));
  const std::string element = "srv*" + at("cache") + "*" + address("steady");
  helper->addServer(std::wstring(element.begin(), element.end()).c_str());
  const std::string binary = realFile("tiny64.exe");
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i)
    threads.emplace_back([&] {
      EXPECT_TRUE(helper->download(std::wstring(binary.begin(), binary.end()).c_str(), nullptr));
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(requests(), SizeIs(2)) << "the tiers and the file";
}

TEST_F(ServerDownload, ServersOfDebugFilesAreAskedTheirWay) {
  const std::string path = obtainFrom("debug-server", "hello");
  EXPECT_THAT(path, StartsWith(at("cache/.build-id/"))) << reports();
  EXPECT_EQ(contentOf(path), contentOf(realFile("hello.debug")));
  EXPECT_THAT(requests(), SizeIs(1));
}

TEST_F(ServerDownload, TheirWordForNonsenseIsAMiss) {
  EXPECT_EQ(obtainFrom("debug-server", "second"), "");
  EXPECT_THAT(reports(), Not(HasSubstr("left alone")));
  EXPECT_NE(obtainFrom("debug-server", "hello"), "");
}

TEST_F(ServerDownload, HostileNamesStayInTheCache) {
  // So deep that the name's way up would still end in the tree.
  const std::string cache = at("a/b/c/d/cache");
  EXPECT_EQ(obtain({"srv*" + cache + "*" + address("good")}, "hostile.exe"), "");
  EXPECT_THAT(requests(), SizeIs(Ge(1u)));
  EXPECT_THAT(requests().back(), AllOf(HasSubstr("evil.pdb"), Not(HasSubstr(".."))));
  EXPECT_THAT(filesIn("a/b/c/d/cache"), IsEmpty());
  EXPECT_THAT(
      filesIn("a"),
      Each(AnyOf("b/", "b/c/", "b/c/d/", "b/c/d/cache/", StartsWith("b/c/d/cache/.misses"))));
}

}  // namespace
}  // namespace symsrv_1_0::internal
