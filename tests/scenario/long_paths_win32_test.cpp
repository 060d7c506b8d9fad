// Trees that are deeper than the old limit of a path.

#include <string>

#include <gmock/gmock.h>

#include "scenario/viewer.h"
#include "support/matchers.h"

namespace QV_2_9 {
namespace {

using quiver_test::IsValidFile;

class LongPathsWindows : public quiver_test::Viewer {};

TEST_F(LongPathsWindows, AreSearchedCheckedAndReturned) {
  m_tree.addChain("a directory with a rather long name", 12, "wanted.dll");
  std::wstring file = m_tree.root();
  for (int level = 0; level < 12; ++level) file += L"\\a directory with a rather long name";
  file += L"\\wanted.dll";
  ASSERT_GT(file.size(), 260u + 100u);
  m_dirs->addSearchDir(scAllFiles, m_tree.root().c_str(), true, true);
  EXPECT_THAT(findBin(L"C:\\build\\wanted.dll"), IsValidFile(file, 1, 2));
  ChecksumValidator check(scBinaryFiles, recordedChecksum(file));
  EXPECT_THAT(findBin(L"wanted.dll", &check), IsValidFile(file, 0, 2));
}

}  // namespace
}  // namespace QV_2_9
