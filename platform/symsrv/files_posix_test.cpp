// Links, pipes and the rights of others.

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "paku/text_encoding.h"
#include "symsrv/elf_identity.h"
#include "symsrv/files.h"

#include "support/temp_tree.h"

namespace symsrv_1_0::internal {
namespace {

using quiver_test::TempTree;

std::string utf8(const std::wstring& text) {
  std::string bytes;
  EXPECT_TRUE(PAKU_3_1::encode(text, bytes));
  return bytes;
}

mode_t modeOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0);
  return status.st_mode & 0777;
}

TEST(FilesOnPosix, RefuseLinksWhereNoneMayBe) {
  TempTree tree;
  const std::string root = utf8(tree.root());
  tree.addFile("outside/a", "1");
  tree.addLink("store", "outside");
  tree.addLink("link", "outside/a");
  using Missing = Folder::Missing;
  EXPECT_TRUE(Folder::open(root, {"store"}, Missing::kRefuse, Links::kFollow));
  EXPECT_FALSE(Folder::open(root, {"store"}, Missing::kMake, Links::kRefuse));
  // The root itself is the user's own choice.
  EXPECT_TRUE(Folder::open(root + "/store", {}, Missing::kRefuse, Links::kRefuse));
  EXPECT_TRUE(FileSource::open(root + "/link", Links::kFollow));
  EXPECT_FALSE(FileSource::open(root + "/link", Links::kRefuse));
}

TEST(FilesOnPosix, PublishingReplacesALinkAndNotItsTarget) {
  TempTree tree;
  const std::string root = utf8(tree.root());
  tree.addFile("outside", "precious");
  tree.addLink("x/a", "../outside");
  const auto folder = Folder::open(root, {"x"}, Folder::Missing::kMake, Links::kRefuse);
  const std::unique_ptr<NewFile> file = folder->create("a");
  ASSERT_TRUE(file->write("new", 3) && file->publish("a"));
  EXPECT_EQ(FileSource::open(root + "/outside")->size(), 8u);
  EXPECT_EQ(folder->read("a", Links::kRefuse)->size(), 3u);
}

TEST(FilesOnPosix, NeverWaitForAPipe) {
  TempTree tree;
  const std::string pipe = utf8(tree.path("pipe"));
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_FALSE(FileSource::open(pipe));
}

TEST(FilesOnPosix, PrivateOnesAreForTheUserAlone) {
  TempTree tree;
  const std::string root = utf8(tree.root()) + "/new/cache";
  EXPECT_EQ(reasonNotPrivate(root), "");
  const auto folder =
      Folder::open(root, {"a"}, Folder::Missing::kMake, Links::kRefuse, Folder::Access::kPrivate);
  ASSERT_TRUE(folder);
  const std::unique_ptr<NewFile> file = folder->create("f");
  ASSERT_TRUE(file && file->publish("f"));
  EXPECT_EQ(modeOf(root), 0700u);
  EXPECT_EQ(modeOf(root + "/a"), 0700u);
  EXPECT_EQ(modeOf(root + "/a/f"), 0600u);
  EXPECT_EQ(reasonNotPrivate(root), "");
  ASSERT_EQ(chmod(root.c_str(), 0777), 0);
  EXPECT_EQ(reasonNotPrivate(root), "others may write there");
  tree.addLink("link", "new/cache/a");
  EXPECT_EQ(reasonNotPrivate(utf8(tree.path("link"))), "is a link");
  EXPECT_EQ(reasonNotPrivate(root + "/a/f"), "is no directory");
  EXPECT_EQ(reasonNotPrivate(root + "/a/f/x"), "cannot be looked at");
}

/// Files grow no further than this while it is there.
class ScopedFileLimit final {
 public:
  explicit ScopedFileLimit(rlim_t size) : m_formerHandler(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_former);
    const rlimit limit{size, m_former.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~ScopedFileLimit() {
    setrlimit(RLIMIT_FSIZE, &m_former);
    signal(SIGXFSZ, m_formerHandler);
  }

  ScopedFileLimit(const ScopedFileLimit&) = delete;
  ScopedFileLimit& operator=(const ScopedFileLimit&) = delete;

 private:
  rlimit m_former{};
  sighandler_t m_formerHandler;
};

TEST(FilesOnPosix, WhatIsNotTakenWholeIsNoSuccess) {
  TempTree tree;
  const auto folder = Folder::open(utf8(tree.root()), {}, Folder::Missing::kRefuse, Links::kRefuse);
  const std::unique_ptr<NewFile> file = folder->create("a");
  const std::string text(800, 'x');
  bool isTaken[3];
  {
    const ScopedFileLimit limit(1000);
    for (bool& taken : isTaken) taken = file->write(text.data(), text.size());
  }
  EXPECT_TRUE(isTaken[0]);
  EXPECT_FALSE(isTaken[1]) << "a part was taken";
  EXPECT_FALSE(isTaken[2]) << "nothing was taken";
  EXPECT_EQ(file->size(), 1000u);
  EXPECT_TRUE(file->clear() && file->write(text.data(), text.size()) && file->publish("a"));
  EXPECT_EQ(folder->read("a", Links::kRefuse)->size(), 800u);
}

TEST(FilesOnPosix, TheRunningProgramIsOne) {
  const std::unique_ptr<FileSource> self = FileSource::open("/proc/self/exe");
  ASSERT_TRUE(self);
  EXPECT_TRUE(readElfIdentity(*self)->isComplete);
}

}  // namespace
}  // namespace symsrv_1_0::internal
