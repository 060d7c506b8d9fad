// Things that bear a manifest's name and are no files.

#include <string>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "manifest_reader.h"
#include "support/temp_tree.h"

namespace quiver_tool {
namespace {

TEST(ManifestReaderPosix, WaitsForNoPipe) {
  quiver_test::TempTree tree;
  const std::wstring pipe = tree.path("m.json");
  ASSERT_EQ(mkfifo(std::string(pipe.begin(), pipe.end()).c_str(), 0600), 0);
  EXPECT_THROW(readManifest(pipe), ManifestError);
  EXPECT_THROW(readManifest(tree.root()), ManifestError);
}

}  // namespace
}  // namespace quiver_tool
