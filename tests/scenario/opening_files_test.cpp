// What was found is opened under its name, whatever the name is and without a locale.

#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "quiver/file_system_path.h"
#include "scenario/viewer.h"

namespace QV_2_9 {
namespace {

std::string contentOf(const std::wstring& path) {
  std::ifstream file(toNativePath(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class OpeningFiles : public quiver_test::Viewer {
 protected:
  OpeningFiles() { m_dirs->addSearchDir(scSourceFiles, m_tree.root().c_str(), false, true); }
};

TEST_F(OpeningFiles, WithALetterThatIsNotAscii) {
  m_tree.addFile(L"\u00E4.c", "content");
  const ObjectPtr<IValidFile> file = findSrc(L"/ci/\u00E4.c");
  ASSERT_TRUE(file);
  EXPECT_EQ(toNativePath(file->getPath()).filename(), std::filesystem::path(u8"\u00E4.c"));
  EXPECT_EQ(contentOf(file->getPath()), "content");
}

TEST_F(OpeningFiles, BelowADirectoryOfTheStandardLibrary) {
  m_tree.addFile(L"\u00E4/b.c", "content");
  m_dirs->addSearchDir(
      scSourceFiles,
      fromNativePath(toNativePath(m_tree.root()) / std::filesystem::path(u8"\u00E4")).c_str(),
      false,
      true);
  const ObjectPtr<IValidFile> file = findSrc(L"b.c");
  ASSERT_TRUE(file);
  EXPECT_EQ(contentOf(file->getPath()), "content");
}

}  // namespace
}  // namespace QV_2_9
