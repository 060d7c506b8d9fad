// Names are bytes here, and need not be text.

#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "quiver/file_system_path.h"
#include "scenario/viewer.h"

namespace QV_2_9 {
namespace {

using OpeningFilesPosix = quiver_test::Viewer;

TEST_F(OpeningFilesPosix, WhoseNamesAreNoText) {
  m_tree.addFile("\xFF.c", "content");
  m_dirs->addSearchDir(scSourceFiles, m_tree.root().c_str(), false, true);
  const ObjectPtr<IValidFile> file = findSrc(fromNameBytes("/ci/\xFF.c"));
  ASSERT_TRUE(file);
  EXPECT_EQ(toNativePath(file->getPath()).filename().native(), "\xFF.c");
  std::string content;
  std::ifstream(toNativePath(file->getPath())) >> content;
  EXPECT_EQ(content, "content");
}

}  // namespace
}  // namespace QV_2_9
