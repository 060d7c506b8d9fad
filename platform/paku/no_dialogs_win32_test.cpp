// The thread's error mode while files are looked at, and afterwards.

#include <windows.h>
#include <string>

#include <gtest/gtest.h>

#include "paku/file.h"
#include "paku/file_info.h"
#include "paku/file_ops.h"
#include "paku/found_paths_test_support.h"
#include "paku/no_dialogs.h"

#include "support/scoped_error_mode_win32.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

using quiver_test::ScopedErrorMode;
using quiver_test::TempTree;

constexpr DWORD kQuiet = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;

TEST(NoDialogsWindows, HoldsBackMessageBoxesWhileItLives) {
  const ScopedErrorMode before(0);
  {
    const NoDialogs outer;
    EXPECT_EQ(GetThreadErrorMode(), kQuiet);
    {
      const NoDialogs inner;
      EXPECT_EQ(GetThreadErrorMode(), kQuiet);
    }
    EXPECT_EQ(GetThreadErrorMode(), kQuiet);
  }
  EXPECT_EQ(GetThreadErrorMode(), 0u);
}

TEST(NoDialogsWindows, KeepsWhatTheThreadHoldsBackItself) {
  const ScopedErrorMode before(SEM_NOGPFAULTERRORBOX);
  {
    const NoDialogs noDialogs;
    EXPECT_EQ(GetThreadErrorMode(), kQuiet | SEM_NOGPFAULTERRORBOX);
  }
  EXPECT_EQ(GetThreadErrorMode(), DWORD{SEM_NOGPFAULTERRORBOX});
}

TEST(NoDialogsWindows, FileCallsLeaveTheModeAsItWas) {
  const ScopedErrorMode before(0);
  TempTree tree;
  const Filename file(tree.addFile("d/a", "x"));
  FileInfo info;
  EXPECT_EQ(fileInfo(file, 0, info), 0);
  EXPECT_NE(fileInfo(Filename(tree.path("none")), 0, info), 0);
  EXPECT_EQ(File(file).lastOpStatus(), 0);
  EXPECT_EQ(copyFile(file, Filename(tree.path("copy")), true), 0);
  EXPECT_EQ(createDirectory(Filename(tree.path("new"))), 0);
  FileModifiable(file, true);
  EXPECT_FALSE(internal::findIn(tree, L"a").empty());
  EXPECT_EQ(GetThreadErrorMode(), 0u);
}

}  // namespace
}  // namespace PAKU_3_1
