// Files that others have open.

#include <windows.h>

#include <gtest/gtest.h>

#include "paku/text_encoding.h"
#include "symsrv/files.h"

#include "support/temp_tree.h"

namespace symsrv_1_0::internal {
namespace {

TEST(FilesOnWindows, AFileInUseIsNotReplacedAndTheNewOneCanBeReadStill) {
  quiver_test::TempTree tree;
  const std::wstring used = tree.addFile("x/a", "old");
  const HANDLE handle =
      CreateFileW(used.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(handle, INVALID_HANDLE_VALUE);
  std::string root;
  ASSERT_TRUE(PAKU_3_1::encode(tree.root(), root));
  const auto folder = Folder::open(root, {"x"}, Folder::Missing::kMake, Links::kRefuse);
  const std::unique_ptr<NewFile> file = folder->create("a");
  ASSERT_TRUE(file && file->write("new", 3));
  EXPECT_FALSE(file->publish("a"));
  char bytes[3];
  EXPECT_TRUE(file->read(0, bytes, 3));
  EXPECT_EQ(std::string(bytes, 3), "new");
  CloseHandle(handle);
  EXPECT_EQ(FileSource::open(folder->pathOf("a"))->size(), 3u);
}

}  // namespace
}  // namespace symsrv_1_0::internal
