// Output files among what only POSIX file systems have.

#include <csignal>
#include <filesystem>
#include <future>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>

#include "paku/scoped_user_test_support.h"

#include "output_file.h"
#include "support/file_contents.h"
#include "support/temp_tree.h"

namespace quiver_tool {
namespace {

namespace fs = std::filesystem;

using quiver_test::contentOf;
using quiver_test::entriesOf;
using quiver_test::TempTree;
using testing::UnorderedElementsAre;

/// No file of this process grows beyond some bytes.
class SmallFiles final {
 public:
  explicit SmallFiles(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_former);
    const rlimit small{bytes, m_former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~SmallFiles() {
    setrlimit(RLIMIT_FSIZE, &m_former);
    std::signal(SIGXFSZ, m_handler);
  }

  SmallFiles(const SmallFiles&) = delete;
  SmallFiles& operator=(const SmallFiles&) = delete;

 private:
  rlimit m_former{};
  void (*m_handler)(int);
};

TEST(OutputFilePosix, ThatDoesNotFitKeepsWhatWasThere) {
  TempTree tree;
  const std::wstring path = tree.addFile("a.html", "before");
  {
    const SmallFiles small(10'000);
    EXPECT_EQ(writeOutputFile(path, std::string(20'000, 'x')), "File too large");
    EXPECT_EQ(writeOutputFile(tree.path("new.html"), std::string(20'000, 'x')), "File too large");
  }
  EXPECT_EQ(contentOf(path), "before");
  EXPECT_THAT(entriesOf(tree.root()), UnorderedElementsAre("a.html"));
}

TEST(OutputFilePosix, KeepsItsMode) {
  TempTree tree;
  const fs::path path = tree.addFile("a.html");
  for (const fs::perms mode : {fs::perms(0600), fs::perms(0664)}) {
    fs::permissions(path, mode);
    EXPECT_EQ(writeOutputFile(path.wstring(), "x"), "");
    EXPECT_EQ(fs::status(path).permissions(), mode);
  }
  const mode_t former = umask(027);
  EXPECT_EQ(writeOutputFile(tree.path("new.html"), "x"), "");
  umask(former);
  EXPECT_EQ(fs::status(tree.path("new.html")).permissions(), fs::perms(0640));
}

TEST(OutputFilePosix, IsWrittenWhereALinkLeads) {
  TempTree tree;
  tree.addFile("sub/a.html");
  const fs::path link = tree.addLink("link.html", "sub/a.html");
  EXPECT_EQ(writeOutputFile(link.wstring(), "x"), "");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(contentOf(tree.path("sub/a.html")), "x");
}

TEST(OutputFilePosix, ThatIsADeviceOrAPipeStaysOne) {
  TempTree tree;
  const fs::path full = tree.addLink("full", "/dev/full");
  EXPECT_EQ(writeOutputFile(full.wstring(), "x"), "No space left on device");
  EXPECT_TRUE(fs::is_character_file(full));
  const fs::path pipe = tree.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::future<std::string> reader =
      std::async(std::launch::async, [&pipe] { return contentOf(pipe); });
  EXPECT_EQ(outputObstacle(pipe.wstring()), "") << "and no reader sees an end";
  EXPECT_EQ(writeOutputFile(pipe.wstring(), "x"), "");
  EXPECT_EQ(reader.get(), "x");
  EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST(OutputFilePosix, NeedsTheRightToWrite) {
  TempTree tree;
  const std::wstring closed = tree.addFile("closed.html", "before");
  fs::permissions(closed, fs::perms(0444));
  tree.addDirectory("closed");
  const std::wstring open = tree.addFile("closed/open.html", "before");
  fs::permissions(open, fs::perms(0666));
  fs::permissions(tree.path("closed"), fs::perms(0555));
  fs::permissions(tree.root(), fs::perms(0777));
  const PAKU_3_1::internal::OrdinaryUser user;
  ASSERT_TRUE(user.isOrdinary());
  EXPECT_EQ(outputObstacle(closed), "Permission denied");
  EXPECT_EQ(writeOutputFile(closed, "x"), "Permission denied");
  EXPECT_EQ(writeOutputFile(open, "x"), "no file can be made in its directory: Permission denied");
  EXPECT_EQ(contentOf(closed) + contentOf(open), "beforebefore");
}

}  // namespace
}  // namespace quiver_tool
