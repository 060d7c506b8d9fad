// What a watcher hears of the stores.

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class StoreReports : public DownloadFixture {
 protected:
  StoreReports() { m_progress.m_isWatching = true; }

  const std::vector<RecordedStore>& stores() const { return m_progress.m_stores; }
  std::int64_t sizeOfFile() const {
    return static_cast<std::int64_t>(contentOf(realFile("tiny64.pdb")).size());
  }
};

TEST_F(StoreReports, NameEachDirectoryOfAChain) {
  file("b", "tiny64.pdb");
  obtain({"srv*" + at("a") + "*" + at("b")});
  ASSERT_THAT(stores(), SizeIs(2));
  EXPECT_EQ(stores()[0].store, at("a"));
  EXPECT_EQ(stores()[0].outcome, StoreOutcome::kMissing);
  EXPECT_EQ(stores()[1].store, at("b"));
  EXPECT_EQ(stores()[1].outcome, StoreOutcome::kFound);
  EXPECT_EQ(stores()[1].place, at("b/" + key()));
  EXPECT_EQ(stores()[1].bytes, sizeOfFile());
  for (const RecordedStore& store : stores()) EXPECT_EQ(store.identity + "/tiny64.pdb", key());
}

TEST_F(StoreReports, SayOnceThatADirectoryHasItInNeitherLayout) {
  obtain({"srv*" + at("a") + "*" + at("b")}, "hello");
  ASSERT_THAT(stores(), SizeIs(2));
  EXPECT_EQ(stores()[0].store, at("a"));
  EXPECT_EQ(stores()[0].outcome, StoreOutcome::kMissing);
  EXPECT_EQ(m_reports, (std::vector{at("a") + ": not there", at("b") + ": not there"}));
}

TEST_F(StoreReports, SayOnceWhatSpeaksAgainstAStore) {
  obtain({"srv*relative"}, "hello");
  ASSERT_THAT(stores(), SizeIs(1));
  EXPECT_EQ(stores()[0].outcome, StoreOutcome::kLeftAlone);
  EXPECT_THAT(m_reports, SizeIs(1));
}

TEST_F(StoreReports, KeepWhatSpokeAgainstAFileInTheOtherLayout) {
  const std::string id = contentOf(realFile("hello.id")).substr(0, 40);
  file("a", "second", ".build-id/" + id.substr(0, 2) + "/" + id.substr(2) + ".debug");
  obtain({"srv*" + at("a")}, "hello");
  ASSERT_THAT(stores(), SizeIs(1));
  EXPECT_EQ(stores()[0].outcome, StoreOutcome::kMismatch);
}

TEST_F(StoreReports, SayThatAFolderIsEmpty) {
  m_tree.addDirectory("a/" + key());
  std::filesystem::remove(at("a/" + key()));
  obtain({"srv*" + at("a")});
  EXPECT_EQ(m_reports, std::vector{at("a") + ": not there"});
}

TEST_F(StoreReports, SayOnceThatAServerIsLeftAlone) {
  serve();
  for (int i = 0; i < 2; ++i) {
    m_reports.clear();
    obtainFrom("refuse", "hello");
  }
  EXPECT_THAT(m_reports, SizeIs(2)) << "the cache and the server";
  EXPECT_THAT(stores(), SizeIs(4));
}

TEST_F(StoreReports, TellAFileOfAnotherBuild) {
  file("a", "other/tiny64.pdb");
  obtain({"srv*" + at("a")});
  ASSERT_THAT(stores(), SizeIs(1));
  EXPECT_EQ(stores()[0].outcome, StoreOutcome::kMismatch);
  EXPECT_THAT(stores()[0].detail, Not(IsEmpty()));
}

TEST_F(StoreReports, TellWhatAServerSent) {
  serve();
  obtainFrom("good?secret=1");
  ASSERT_THAT(stores(), SizeIs(2));
  EXPECT_EQ(stores()[1].outcome, StoreOutcome::kFound);
  EXPECT_EQ(stores()[1].bytes, sizeOfFile());
  EXPECT_THAT(stores()[1].place, HasSubstr("tiny64.pdb"));
  EXPECT_THAT(stores()[1].store + stores()[1].place, Not(HasSubstr("secret")));
}

TEST_F(StoreReports, TellThatAServerDoesNotHaveItAndIsNotAskedAgain) {
  serve();
  obtainFrom("missing");
  ASSERT_THAT(stores(), SizeIs(2));
  EXPECT_EQ(stores()[1].outcome, StoreOutcome::kMissing);
  EXPECT_EQ(stores()[1].bytes, 0);
  obtainFrom("missing");
  ASSERT_THAT(stores(), SizeIs(4));
  EXPECT_EQ(stores()[3].outcome, StoreOutcome::kLeftAlone);
}

TEST_F(StoreReports, TellOfElementsThatCannotBeUsed) {
  obtain({"srv*" + at("a") + "*ftp://host"});
  ASSERT_THAT(stores(), SizeIs(1));
  EXPECT_EQ(stores()[0].store, "");
  EXPECT_EQ(stores()[0].outcome, StoreOutcome::kLeftAlone);
  EXPECT_THAT(stores()[0].detail, HasSubstr("unsupported address"));
}

TEST_F(StoreReports, TellOfBinariesThatCannotBeRead) {
  obtain({"srv*" + at("a")}, "absent.exe");
  ASSERT_THAT(stores(), SizeIs(1));
  EXPECT_EQ(stores()[0].outcome, StoreOutcome::kLeftAlone);
  EXPECT_THAT(stores()[0].detail, EndsWith("absent.exe: cannot be read"));
}

TEST_F(StoreReports, AreMadeForNobodyElse) {
  m_progress.m_isWatching = false;
  obtain({"srv*" + at("a")});
  EXPECT_THAT(stores(), IsEmpty());
}

}  // namespace
}  // namespace symsrv_1_0::internal
