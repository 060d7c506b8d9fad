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

TEST(File, OpensRegularFilesAndLinksToThem) {
  TempTree tree;
  EXPECT_TRUE(canOpen(tree.addFile("a.dll", "x")));
  EXPECT_TRUE(canOpen(tree.addLink("link", "a.dll")));
}

TEST(File, DoesNotOpenWhatIsMissing) {
  TempTree tree;
  EXPECT_FALSE(canOpen(L""));
  EXPECT_FALSE(canOpen(tree.path("missing")));
  EXPECT_FALSE(canOpen(tree.addLink("dangling", "missing")));
  EXPECT_FALSE(canOpen(tree.addLink("loop", "loop")));
}

TEST(File, DoesNotOpenDirectories) {
  TempTree tree;
  EXPECT_FALSE(canOpen(tree.root()));
}

TEST(File, DoesNotWaitForAPipe) {
  TempTree tree;
  const std::wstring pipe = tree.addUnreadableFile("pipe");
  EXPECT_FALSE(canOpen(pipe));
  EXPECT_EQ(md5Of(pipe), L"");
}

TEST(File, DoesNotOpenDevices) {
  EXPECT_FALSE(canOpen(L"/dev/null"));
  EXPECT_EQ(md5Of(L"/dev/zero"), L"");
}

TEST(File, DoesNotOpenSockets) {
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

TEST(File, Md5IsThatOfTheWholeContent) {
  TempTree tree;
  EXPECT_EQ(md5Of(tree.addFile("empty")), L"d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(md5Of(tree.addFile("abc", "abc")), L"900150983cd24fb0d6963f7d28e17f72");
  EXPECT_EQ(md5Of(tree.addFile("long", std::string(1000003, 'x'))),
            L"55a76be3046fa1e602ae663deccfcd78");
}

TEST(File, Md5CanBeAskedAgain) {
  TempTree tree;
  File file(Filename(tree.addFile("abc", "abc")));
  EXPECT_EQ(file.md5checksum(), String(L"900150983cd24fb0d6963f7d28e17f72"));
  EXPECT_EQ(file.md5checksum(), String(L"900150983cd24fb0d6963f7d28e17f72"));
}

TEST(File, Md5OfAFileThatCannotBeReadIsEmpty) {
  // A regular file that opens, and of which the first page is never mapped.
  File file(Filename(L"/proc/self/mem"));
  ASSERT_EQ(file.lastOpStatus(), 0);
  EXPECT_EQ(file.md5checksum(), String());
}

TEST(FileModifiable, MakesAReadOnlyFileWritable) {
  TempTree tree;
  const fs::path path = tree.addFile("a.dll", "content");
  fs::permissions(path, fs::perms::owner_read | fs::perms::others_read);
  FileModifiable(Filename(path.wstring()), true);
  EXPECT_EQ(fs::status(path).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
  EXPECT_EQ(fs::file_size(path), 7u);
}

TEST(FileModifiable, DoesNothingUnlessAskedTo) {
  TempTree tree;
  const fs::path path = tree.addFile("a.dll");
  fs::permissions(path, fs::perms::owner_read);
  FileModifiable(Filename(path.wstring()), false);
  EXPECT_FALSE(isOwnerWritable(path));
}

TEST(FileModifiable, CreatesNothing) {
  TempTree tree;
  FileModifiable(Filename(tree.path("missing")), true);
  FileModifiable(Filename(L""), true);
  EXPECT_TRUE(fs::is_empty(tree.root()));
}

TEST(FileModifiable, LeavesDirectoriesAlone) {
  TempTree tree;
  const fs::path path = tree.addDirectory("dir");
  fs::permissions(path, fs::perms::owner_read);
  FileModifiable(Filename(path.wstring()), true);
  EXPECT_FALSE(isOwnerWritable(path));
}

}  // namespace
}  // namespace PAKU_3_1
