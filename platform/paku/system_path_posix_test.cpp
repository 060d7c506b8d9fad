// Canonical names where directories may be links.

#include <string>

#include <gtest/gtest.h>

#include "paku/filename.h"
#include "paku/system_path.h"

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

std::wstring canonical(const std::wstring& path) {
  return Filename(path).canonical().text().text();
}

TEST(SystemPathPosix, GoesUpFromWhereALinkLeads) {
  quiver_test::TempTree tree;
  tree.addDirectory("far/away");
  tree.addLink("absolute", tree.path("far/away"));
  tree.addLink("relative", "far/away");
  EXPECT_EQ(canonical(tree.root() + L"/absolute/../x"), tree.path("far/x"));
  EXPECT_EQ(canonical(tree.root() + L"/relative/../x"), tree.path("far/x"));
}

TEST(SystemPathPosix, KeepsLinksAndWhatDoesNotExist) {
  quiver_test::TempTree tree;
  tree.addLink("link", "far/away");
  EXPECT_EQ(canonical(tree.root() + L"//link/./x/"), tree.path("link/x"));
  EXPECT_EQ(canonical(tree.root() + L"/missing/../x"), tree.path("x"));
}

TEST(SystemPathPosix, LoopsEnd) {
  quiver_test::TempTree tree;
  tree.addLink("loop", "loop");
  EXPECT_EQ(canonical(tree.root() + L"/loop/../x"), tree.path("x"));
}

TEST(SystemPathPosix, ReadsLinksOfRelativeNamesFromTheCurrentDirectory) {
  quiver_test::TempTree tree;
  tree.addDirectory("far/away");
  tree.addLink("link", "far/away");
  const quiver_test::ScopedDirectory here(tree.root());
  EXPECT_EQ(canonical(L"link/../x"), L"far/x");
}

TEST(SystemPathPosix, LeavesDrivesAlone) {
  EXPECT_EQ(internal::withoutDriveDirectory(L"C:x"), L"C:x");
  EXPECT_EQ(canonical(L"C:\\Dir"), L"C:\\Dir");
  EXPECT_EQ(canonical(L"c:\\dir\\"), L"c:\\dir");
}

}  // namespace
}  // namespace PAKU_3_1
