// Files that are shared with nobody.

#include <windows.h>
#include <string>

#include <gtest/gtest.h>

#include "support/temp_tree.h"

namespace quiver_test {
namespace {

TEST(TempTreeWindows, SharesAnUnreadableFileWithNobody) {
  TempTree tree;
  const std::wstring path = tree.addUnreadableFile("a/locked");
  const HANDLE handle = CreateFileW(path.c_str(),
                                    GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr,
                                    OPEN_EXISTING,
                                    0,
                                    nullptr);
  EXPECT_EQ(handle, INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
}

}  // namespace
}  // namespace quiver_test
