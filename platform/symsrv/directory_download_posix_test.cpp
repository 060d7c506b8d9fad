// Links and the rights of others in chains of directories.

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "symsrv/download_fixture_test_support.h"
#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class DirectoryDownloadOnPosix : public DownloadFixture {
 protected:
  void expectRight(const std::string& path, const std::string& where) const {
    EXPECT_EQ(path, at(where + "/" + key())) << reports();
    EXPECT_TRUE(path.empty() || contentOf(path) == contentOf(realFile("tiny64.pdb")));
  }
};

TEST_F(DirectoryDownloadOnPosix, TheDefaultStoreIsForTheUserAlone) {
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv**" + at("c")}), "default");
  struct stat status {};
  ASSERT_EQ(stat(at("default").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(DirectoryDownloadOnPosix, ADefaultStoreThatOthersMayWriteIsNotUsed) {
  m_tree.addDirectory("default");
  ASSERT_EQ(chmod(at("default").c_str(), 0777), 0);
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv**" + at("c")}), "c");
  EXPECT_THAT(reports(), HasSubstr("others may write there"));
  EXPECT_THAT(filesIn("default"), IsEmpty());
}

TEST_F(DirectoryDownloadOnPosix, ADefaultStoreOfSomebodyElseIsNotUsed) {
  m_tree.addDirectory("default");
  constexpr uid_t kNobody = 65534;
  if (chown(at("default").c_str(), kNobody, kNobody) != 0)
    GTEST_SKIP() << "NOT TESTED: only root may give files away";
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv**" + at("c")}), "c");
  EXPECT_THAT(filesIn("default"), IsEmpty());
}

TEST_F(DirectoryDownloadOnPosix, ADefaultStoreThatIsALinkIsNotUsed) {
  m_tree.addDirectory("elsewhere");
  m_tree.addLink("default", "elsewhere");
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv**" + at("c")}), "c");
  EXPECT_THAT(reports(), HasSubstr("default: is a link"));
  EXPECT_THAT(filesIn("elsewhere"), IsEmpty());
}

TEST_F(DirectoryDownloadOnPosix, KeysInLowerCaseAreLookedUpWhenTheUserWantsThat) {
  const std::string lower = toLower(key());
  file("c", "tiny64.pdb", lower);
  EXPECT_EQ(obtain({"srv*" + at("a") + "*" + at("c")}), "");
  forget();
  m_settings.looksInLowerCase = true;
  expectRight(obtain({"srv*" + at("a") + "*" + at("c")}), "a");
  EXPECT_THAT(filesIn("a"), ElementsAre(key())) << "caches have one spelling";
  EXPECT_EQ(obtain({"srv*" + at("c")}), at("c/" + lower));
}

TEST_F(DirectoryDownloadOnPosix, LinksInCachesAreNotFollowed) {
  file("outside", "tiny64.pdb");
  m_tree.addDirectory("a");
  m_tree.addLink("a/tiny64.pdb", "../outside/tiny64.pdb");
  file("c", "tiny64.pdb");
  // The copy cannot be made where a stranger's link stands, so the file serves where it lies.
  expectRight(obtain({"srv*" + at("a") + "*" + at("c")}), "c");
  // In a store that takes no copies links are the keeper's own affair.
  expectRight(obtain({"srv*" + at("a")}), "a");
}

TEST_F(DirectoryDownloadOnPosix, TheRootOfACacheMayBeALink) {
  m_tree.addDirectory("real");
  m_tree.addLink("a", "real");
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv*" + at("a") + "*" + at("c")}), "a");
  EXPECT_THAT(filesIn("real"), ElementsAre(key()));
}

TEST_F(DirectoryDownloadOnPosix, StaleTemporariesAreSweptOnceADay) {
  const std::string stale = "a/x/y/z.pdb.123.0123456789abcdef.tmp";
  m_tree.addFile(stale);
  m_tree.setModificationTime(stale, 1);
  m_tree.addFile("a/x/fresh.pdb.123.0123456789abcdef.tmp");
  m_tree.addFile("a/x/mine.tmp");
  m_tree.setModificationTime("a/x/mine.tmp", 1);
  serve();
  obtain({"srv*" + at("a") + "*" + address("good")}, "repro.exe");
  EXPECT_FALSE(std::filesystem::exists(at(stale)));
  EXPECT_TRUE(std::filesystem::exists(at("a/x/fresh.pdb.123.0123456789abcdef.tmp")));
  EXPECT_TRUE(std::filesystem::exists(at("a/x/mine.tmp")));
  m_tree.addFile(stale);
  m_tree.setModificationTime(stale, 1);
  forget();
  obtain({"srv*" + at("a") + "*" + address("good")}, "tiny32.exe");
  EXPECT_TRUE(std::filesystem::exists(at(stale)));
}

class StaleTemporariesOnPosix : public DownloadFixture,
                                public ::testing::WithParamInterface<const char*> {
 protected:
  StaleTemporariesOnPosix() { serve(); }
};

TEST_P(StaleTemporariesOnPosix, AreSweptFromEveryStoreThatTakesCopies) {
  const std::string name = "/tiny64.pdb/ID/tiny64.pdb.123.0123456789abcdef.tmp";
  for (const char* store : {"a", "b"}) {
    m_tree.addFile(store + name);
    m_tree.setModificationTime(store + name, 1);
  }
  obtain({"srv*" + at("a") + "*" + at("b") + "*" + address(GetParam())});
  EXPECT_FALSE(std::filesystem::exists(at("a" + name)));
  EXPECT_FALSE(std::filesystem::exists(at("b" + name)));
}

INSTANTIATE_TEST_SUITE_P(
    Ways,
    StaleTemporariesOnPosix,
    ::testing::Values("good", "good?secret=1", "missing", "cut-length", "wrong", "e500"));

TEST_F(DirectoryDownloadOnPosix, StaleTemporariesOfCopiesBetweenDirectoriesAreSweptToo) {
  const std::string stale = "a/x/z.pdb.123.0123456789abcdef.tmp";
  m_tree.addFile(stale);
  m_tree.setModificationTime(stale, 1);
  m_tree.addFile("c/x/z.pdb.123.0123456789abcdef.tmp");
  m_tree.setModificationTime("c/x/z.pdb.123.0123456789abcdef.tmp", 1);
  file("c", "tiny64.pdb");
  expectRight(obtain({"srv*" + at("a") + "*" + at("c")}), "a");
  EXPECT_FALSE(std::filesystem::exists(at(stale)));
  EXPECT_TRUE(std::filesystem::exists(at("c/x/z.pdb.123.0123456789abcdef.tmp"))) << "not ours";
  EXPECT_FALSE(std::filesystem::exists(at("c/.misses")));
}

}  // namespace
}  // namespace symsrv_1_0::internal
