// Chains of directories: what is found where, verified, copied and expanded.

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class DirectoryDownload : public DownloadFixture {
 protected:
  void expectRight(const std::string& path, const std::string& where) const {
    EXPECT_EQ(path, at(where + "/" + key())) << reports();
    EXPECT_TRUE(path.empty() || contentOf(path) == contentOf(realFile("tiny64.pdb")));
  }
};

TEST_F(DirectoryDownload, OneStoreIsUsedInPlace) {
  file("a", "tiny64.pdb");
  expectRight(obtain({"srv*" + at("a")}), "a");
  EXPECT_THAT(filesIn("default"), IsEmpty());
  EXPECT_EQ(m_progress.m_started, 0);
}

TEST_F(DirectoryDownload, ACompressedFileOfOneStoreGoesToTheDefaultStore) {
  file("a", "tiny64.pd_", key("tiny64.pd_"));
  expectRight(obtain({"srv*" + at("a")}), "default");
  EXPECT_THAT(filesIn("a"), ElementsAre(key("tiny64.pd_")));
}

TEST_F(DirectoryDownload, WhatWasExpandedServesTheNextTime) {
  file("a", "tiny64.pd_", key("tiny64.pd_"));
  expectRight(obtain({"srv*" + at("a")}), "default");
  m_tree.setModificationTime("default/" + key(), 1000000000);
  const auto time = std::filesystem::last_write_time(at("default/" + key()));
  expectRight(obtain({"srv*" + at("a")}), "default");
  EXPECT_EQ(std::filesystem::last_write_time(at("default/" + key())), time) << "expanded again";
}

TEST_F(DirectoryDownload, StoredCabinetsAreExpandedToo) {
  file("a", "stored.cab", key("tiny64.pd_"));
  expectRight(obtain({"srv*" + at("a")}), "default");
}

TEST_F(DirectoryDownload, CopiesReachEveryStoreOnTheLeft) {
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv*" + at("a") + "*" + at("b") + "*" + at("c")}), "a");
  EXPECT_THAT(filesIn("a"), ElementsAre(key()));
  EXPECT_THAT(filesIn("b"), ElementsAre(key()));
  EXPECT_EQ(m_progress.m_started, 1);
  EXPECT_EQ(m_progress.m_size, 72);
  EXPECT_EQ(m_progress.m_finished, 1);
}

TEST_F(DirectoryDownload, OnlyTheNearestStoreIsUncompressed) {
  file("c", "tiny64.pd_", key("tiny64.pd_"));
  expectRight(obtain({"srv*" + at("a") + "*" + at("b") + "*" + at("c")}), "a");
  EXPECT_THAT(filesIn("a"), ElementsAre(key()));
  EXPECT_THAT(filesIn("b"), ElementsAre(key("tiny64.pd_")));
  EXPECT_EQ(contentOf(at("b/" + key("tiny64.pd_"))), contentOf(realFile("tiny64.pd_")));
  // What lies in the middle serves the next time.
  std::filesystem::remove_all(at("a"));
  std::filesystem::remove_all(at("c"));
  expectRight(obtain({"srv*" + at("a") + "*" + at("b") + "*" + at("c")}), "a");
}

TEST_F(DirectoryDownload, EachStoreHasItsOwnTiers) {
  m_tree.addFile("a/index2.txt");
  m_tree.addFile("c/index2.txt");
  file("c", "tiny64.pdb", "ti/" + key());
  EXPECT_EQ(obtain({"srv*" + at("a") + "*" + at("b") + "*" + at("c")}), at("a/ti/" + key()));
  EXPECT_THAT(filesIn("b"), ElementsAre(key()));
}

TEST_F(DirectoryDownload, EmptyElementsAreTheDefaultStore) {
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv**" + at("c")}), "default");
}

TEST_F(DirectoryDownload, LaterElementsServeWhenEarlierOnesDoNot) {
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv*" + at("missing"), "symsrv*other.dll*" + at("c"), "srv*" + at("c")}),
              "c");
  EXPECT_THAT(reports(), HasSubstr("unsupported symbol-server library \"other.dll\""));
}

TEST_F(DirectoryDownload, CachesTakeWhatLaterElementsYield) {
  file("c", "tiny64.pdb");
  expectRight(obtain({"cache*" + at("k"), "srv*" + at("c")}), "k");
  std::filesystem::remove_all(at("c"));
  expectRight(obtain({"cache*" + at("k")}), "k");
}

TEST_F(DirectoryDownload, WrongFilesArePassedOverAndReplacedInCaches) {
  file("a", "other/tiny64.pdb");
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv*" + at("a") + "*" + at("c")}), "a");
  EXPECT_THAT(reports(), HasSubstr("GUID differs"));
}

TEST_F(DirectoryDownload, WrongFilesAreNeverReturnedNorRemoved) {
  file("a", "other/tiny64.pdb");
  EXPECT_EQ(obtain({"srv*" + at("a")}), "");
  m_tree.addFile("b/" + key());
  EXPECT_EQ(obtain({"srv*" + at("b")}), "");
  EXPECT_THAT(reports(), HasSubstr("empty"));
  EXPECT_THAT(filesIn("a"), ElementsAre(key()));
  EXPECT_THAT(filesIn("b"), ElementsAre(key()));
}

TEST_F(DirectoryDownload, WrongContentOfACabinetIsNotFiled) {
  file("c", "two.cab", key("tiny64.pd_"));
  EXPECT_EQ(obtain({"srv*" + at("a") + "*" + at("b") + "*" + at("c")}), "");
  EXPECT_THAT(reports(), HasSubstr("not a cabinet of one file"));
  EXPECT_THAT(filesIn("a"), IsEmpty());
  EXPECT_THAT(filesIn("b"), IsEmpty());
}

TEST_F(DirectoryDownload, StoresThatCannotBeWrittenAreLeftOut) {
  m_tree.addFile("a", "a file where a folder should be");
  file("c", "tiny64.pd_", key("tiny64.pd_"));
  expectRight(obtain({"srv*" + at("a") + "*" + at("b") + "*" + at("c")}), "b");
  file("d", "tiny64.pdb");
  expectRight(obtain({"srv*" + at("a/x") + "*" + at("d")}), "d");
}

TEST_F(DirectoryDownload, RelativeStoresAreLeftOut) {
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv*relative*" + at("c")}), "c");
  EXPECT_THAT(reports(), HasSubstr("not an absolute path"));
  EXPECT_FALSE(std::filesystem::exists("relative"));
}

TEST_F(DirectoryDownload, PointersLeadIntoStoresOnly) {
  file("pool", "tiny64.pdb", "x/tiny64.pdb");
  m_tree.addFile("c/" + key("file.ptr"), "PATH:" + at("pool/x/tiny64.pdb") + "\r\n");
  EXPECT_EQ(obtain({"srv*" + at("c")}), "");
  EXPECT_THAT(reports(), HasSubstr("points to nothing in a store"));
  EXPECT_EQ(obtain({"srv*" + at("c"), "srv*" + at("pool")}), at("pool/x/tiny64.pdb"));
  expectRight(obtain({"srv*" + at("a") + "*" + at("c"), "srv*" + at("pool")}), "a");
}

TEST_F(DirectoryDownload, PointersMayBeRelativeToTheirStore) {
  file("c", "tiny64.pdb", "pool/tiny64.pdb");
  m_tree.addFile("c/" + key("file.ptr"), "pool\\tiny64.pdb");
  EXPECT_EQ(obtain({"srv*" + at("c")}), at("c/pool/tiny64.pdb"));
}

TEST_F(DirectoryDownload, PointersThatLeadOutOfTheirStoreAreRefused) {
  file("outside", "tiny64.pdb", "tiny64.pdb");
  for (const char* text : {"../outside/tiny64.pdb",
                           "x/../../outside/tiny64.pdb",
                           R"(\\server\share\tiny64.pdb)",
                           R"(C:\tiny64.pdb)",
                           "//server/x.pdb",
                           "MSG: no longer here"}) {
    m_tree.addFile("c/" + key("file.ptr"), text);
    EXPECT_EQ(obtain({"srv*" + at("c")}), "") << text;
  }
  EXPECT_THAT(reports(), HasSubstr("no longer here"));
}

TEST_F(DirectoryDownload, ElfFilesLieByBuildId) {
  const std::string id = contentOf(realFile("hello.id")).substr(0, 40);
  const std::string place = ".build-id/" + id.substr(0, 2) + "/" + id.substr(2) + ".debug";
  file("c", "hello.debug", place);
  EXPECT_EQ(obtain({"srv*" + at("a") + "*" + at("c")}, "hello"), at("a/" + place));
  file("d", "hello.debug", "_.debug/elf-buildid-sym-" + id + "/_.debug");
  EXPECT_EQ(obtain({"srv*" + at("b") + "*" + at("d")}, "hello"), at("b/" + place));
  EXPECT_EQ(contentOf(at("b/" + place)), contentOf(realFile("hello.debug")));
}

TEST_F(DirectoryDownload, AStrippedBinaryIsNotItsOwnDebugFile) {
  const std::string id = contentOf(realFile("hello.id")).substr(0, 40);
  const std::string place = ".build-id/" + id.substr(0, 2) + "/" + id.substr(2) + ".debug";
  file("c", "hello", place);
  file("d", "hello.debug", place);
  EXPECT_EQ(obtain({"srv*" + at("a") + "*" + at("c") + "*" + at("d")}, "hello"), at("a/" + place));
  EXPECT_EQ(contentOf(at("a/" + place)), contentOf(realFile("hello.debug")));
  EXPECT_THAT(reports(), HasSubstr("has no debug information"));
}

TEST_F(DirectoryDownload, ElfFilesWithoutBuildIdLieByName) {
  file("c", "anonymous.debug", "anonymous.debug");
  EXPECT_EQ(obtain({"srv*" + at("a") + "*" + at("c")}, "anonymous"), at("c/anonymous.debug"));
  EXPECT_THAT(filesIn("a"), IsEmpty());
}

TEST_F(DirectoryDownload, SaysWhyABinaryHasNone) {
  EXPECT_EQ(obtain({"srv*" + at("a")}, "missing.exe"), "");
  EXPECT_EQ(obtain({"srv*" + at("a")}, "tiny.c"), "");
  EXPECT_EQ(obtain({"srv*" + at("a")}, "stream.exe"), "");
  EXPECT_THAT(reports(), HasSubstr("cannot be read"));
  EXPECT_THAT(reports(), HasSubstr("neither a PE nor an ELF"));
  EXPECT_THAT(reports(), HasSubstr("unsafe"));
}

}  // namespace
}  // namespace symsrv_1_0::internal
