// File names of a system where '/' alone separates and is the root.

#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/environment.h"
#include "paku/filename_parts_test_support.h"

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

using internal::joined;
using internal::walkUp;
using internal::withoutFirstDirectory;
using testing::ElementsAre;

TEST(FilenamePosix, TakesTheRootForAComponent) {
  EXPECT_EQ(withoutFirstDirectory(L"/build/src/a.cpp"), L"build/src/a.cpp");
  EXPECT_THAT(walkUp(L"/usr/bin/app"), ElementsAre(L"/usr/bin/", L"/usr/", L"/"));
}

TEST(FilenamePosix, JoinsWithASlash) {
  EXPECT_EQ(joined(L"/res", L"archive"), L"/res/archive");
  EXPECT_EQ(joined(L"/", L"archive"), L"/archive");
  EXPECT_EQ(joined(L"/res", L"/x/../a"), L"/x/../a");
  EXPECT_EQ(joined(L"/res", L""), L"/res");
}

TEST(FilenamePosix, KeepsABackslashInAName) {
  EXPECT_EQ(joined(L"/res", L"src\\a.cpp"), L"/res/src\\a.cpp");
  const Filename name(L"/x/we\\ird.c");
  EXPECT_EQ(name.baseWithoutExtension(), String(L"we\\ird"));
  EXPECT_EQ(name.extension(), String(L".c"));
}

TEST(FilenamePosix, TakesALeadingSlashForAbsolute) {
  EXPECT_TRUE(Filename(L"/x").isAbsolute());
  EXPECT_TRUE(Filename(L"/").isAbsolute());
}

TEST(FilenamePosix, JoinsDirectoriesInTheStyleTheyCameFrom) {
  Filename name;
  name.setDirectories(Filename(L"/x/y/a").directories());
  EXPECT_EQ(name.text(), String(L"/x/y/"));
}

TEST(FilenamePosix, StaysRelativeWhenTheCurrentDirectoryIsGone) {
  quiver_test::TempTree tree;
  const quiver_test::ScopedDirectory here(tree.addDirectory("gone"));
  ASSERT_TRUE(std::filesystem::remove("../gone"));
  ASSERT_EQ(currentDirectory(), L"");
  EXPECT_EQ(joined(L"", L"a.dll"), L"a.dll");
  EXPECT_EQ(joined(L"sub", L"a.dll"), L"sub/a.dll");
}

}  // namespace
}  // namespace PAKU_3_1
