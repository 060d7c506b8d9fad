// Archiving on a full file system: the call says so, leaves nothing under any name, and succeeds as
// soon as there is room.

#include <string>

#include "fault/archive_fixture.h"
#include "fault/scoped_file_system.h"

namespace quiver_test {
namespace {

using namespace QV_2_9;

constexpr std::size_t kFileSize = 200000;
constexpr int kMoreThanFit = 10;

class FullDisk : public FaultyArchive {
 protected:
  std::wstring addFile(int number) {
    return m_tree.addFile("files/" + std::to_string(number) + ".dll",
                          std::string(kFileSize, static_cast<char>('a' + number)));
  }
};

TEST_F(FullDisk, ArchivesUntilItIsFullAndAgainAfterwards) {
  ScopedFileSystem disk(m_tree.path("disk"), "size=1m");
  if (!disk.refusal().empty())
    GTEST_SKIP() << disk.refusal();
  std::size_t archived = 0;
  archive_result_t result = arArchived;
  std::wstring last;
  for (int number = 0; number < kMoreThanFit && result == arArchived; ++number) {
    last = addFile(number);
    result = archive(last);
    archived += result == arArchived ? 1 : 0;
  }
  ASSERT_EQ(result, arCopyFailed);
  ASSERT_GT(archived, 0u);
  expectOnlyWhole(archived);
  EXPECT_EQ(archive(last), arCopyFailed) << "still full";

  std::filesystem::remove(contents().whole.front());
  EXPECT_EQ(archive(last), arArchived);
  EXPECT_EQ(archive(last), arAlreadyArchived);
  expectOnlyWhole(archived);
}

TEST_F(FullDisk, FileLargerThanTheDiskLeavesNothing) {
  ScopedFileSystem disk(m_tree.path("disk"), "size=64k");
  if (!disk.refusal().empty())
    GTEST_SKIP() << disk.refusal();
  const std::wstring file = addFile(0);
  EXPECT_EQ(archive(file), arCopyFailed);
  expectOnlyWhole(0);
  ASSERT_TRUE(disk.setOptions("size=1m"));
  EXPECT_EQ(archive(file), arArchived);
  expectOnlyWhole(1);
}

/// The folders and the copy need an entry each; the last row lacks the copy's alone.
struct Entries {
  const char* title;
  const char* options;
  archive_result_t result;
};

class EntriesRunOut : public FullDisk, public testing::WithParamInterface<Entries> {};

TEST_P(EntriesRunOut, IsReportedAndOverWithMoreRoom) {
  ScopedFileSystem disk(m_tree.path("disk"), GetParam().options);
  if (!disk.refusal().empty())
    GTEST_SKIP() << disk.refusal();
  const std::wstring file = addFile(0);
  EXPECT_EQ(archive(file), GetParam().result);
  expectOnlyWhole(0);
  ASSERT_TRUE(disk.setOptions("nr_inodes=100"));
  EXPECT_EQ(archive(file), arArchived);
  expectOnlyWhole(1);
}

INSTANTIATE_TEST_SUITE_P(
    Stages,
    EntriesRunOut,
    testing::Values(Entries{"Archive", "nr_inodes=1", arCannotCreateDirectory},
                    Entries{"Category", "nr_inodes=2", arCannotCreateDirectory},
                    Entries{"Name", "nr_inodes=3", arCannotCreateDirectory},
                    Entries{"Checksum", "nr_inodes=4", arCannotCreateDirectory},
                    Entries{"Copy", "nr_inodes=5", arCopyFailed}),
    [](const auto& row) { return std::string(row.param.title); });

}  // namespace
}  // namespace quiver_test
