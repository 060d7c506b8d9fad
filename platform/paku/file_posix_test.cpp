// Opening and reading, on a system where a name may stand for a pipe or a device.

#include <cstring>
#include <filesystem>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "paku/file.h"

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace fs = std::filesystem;

namespace PAKU_3_1 {
namespace {

using quiver_test::TempTree;

bool canOpen(const std::wstring& path) {
  return File(Filename(path)).lastOpStatus() == 0;
}

std::wstring md5Of(const std::wstring& path) {
  return File(Filename(path)).md5checksum().text();
}

bool isOwnerWritable(const fs::path& path) {
  return (fs::status(path).permissions() & fs::perms::owner_write) != fs::perms::none;
}

TEST(FilePosix, OpensRegularFilesAndLinksToThem) {
  TempTree tree;
  EXPECT_TRUE(canOpen(tree.addFile("a.dll", "x")));
  EXPECT_TRUE(canOpen(tree.addLink("link", "a.dll")));
}

TEST(FilePosix, DoesNotOpenWhatIsMissing) {
  TempTree tree;
  EXPECT_FALSE(canOpen(L""));
  EXPECT_FALSE(canOpen(tree.path("missing")));
  EXPECT_FALSE(canOpen(tree.addLink("dangling", "missing")));
  EXPECT_FALSE(canOpen(tree.addLink("loop", "loop")));
}

TEST(FilePosix, DoesNotWaitForAPipe) {
  TempTree tree;
  const std::wstring pipe = tree.addUnreadableFile("pipe");
  EXPECT_FALSE(canOpen(pipe));
  EXPECT_EQ(md5Of(pipe), L"");
}

TEST(FilePosix, DoesNotOpenDevices) {
  EXPECT_FALSE(canOpen(L"/dev/null"));
  EXPECT_EQ(md5Of(L"/dev/zero"), L"");
}

TEST(FilePosix, DoesNotOpenSockets) {
  TempTree tree;
  const quiver_test::ScopedDirectory here(tree.root());  // a socket's path must be short
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, "socket");
  const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  EXPECT_FALSE(canOpen(L"socket"));
  close(fd);
}

TEST(FilePosix, Md5OfAFileThatCannotBeReadIsEmpty) {
  // A regular file that opens, and of which the first page is never mapped.
  File file(Filename(L"/proc/self/mem"));
  ASSERT_EQ(file.lastOpStatus(), 0);
  EXPECT_EQ(file.md5checksum(), String());
}

TEST(FileModifiablePosix, MakesAReadOnlyFileWritable) {
  TempTree tree;
  const fs::path path = tree.addFile("a.dll", "content");
  fs::permissions(path, fs::perms::owner_read | fs::perms::others_read);
  FileModifiable(Filename(path.wstring()), true);
  EXPECT_EQ(fs::status(path).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
  EXPECT_EQ(fs::file_size(path), 7u);
}

TEST(FileModifiablePosix, LeavesDirectoriesAlone) {
  TempTree tree;
  const fs::path path = tree.addDirectory("dir");
  fs::permissions(path, fs::perms::owner_read);
  FileModifiable(Filename(path.wstring()), true);
  EXPECT_FALSE(isOwnerWritable(path));
}

}  // namespace
}  // namespace PAKU_3_1
