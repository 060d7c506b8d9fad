// Archiving where nothing may be written, by the file system or by the modes, and files that are
// read-only themselves.

#include <string>

#include "paku/scoped_user_test_support.h"

#include "fault/archive_fixture.h"
#include "fault/scoped_file_system.h"

namespace quiver_test {
namespace {

using namespace QV_2_9;
using std::filesystem::perms;

constexpr const char* kMd5OfA = "0cc175b9c0f1b6a831c399e269772661";
constexpr perms kReadOnly = perms::owner_read | perms::group_read | perms::others_read;
constexpr perms kSearchable =
    kReadOnly | perms::owner_exec | perms::group_exec | perms::others_exec;

/// What was there before the archive became read-only.
struct Prepared {
  const char* title;
  const char* folder;
  archive_result_t result;
};

class ReadOnlyArchive : public FaultyArchive, public testing::WithParamInterface<Prepared> {
 protected:
  ReadOnlyArchive() : m_file(m_tree.addFile("app.dll", "a")) {}

  void prepare() { m_tree.addDirectory(GetParam().folder); }

  std::wstring m_file;
};

TEST_P(ReadOnlyArchive, OnAReadOnlyFileSystem) {
  ScopedFileSystem disk(m_tree.path("disk"), "");
  if (!disk.refusal().empty())
    GTEST_SKIP() << disk.refusal();
  prepare();
  ASSERT_TRUE(disk.setReadOnly(true));
  EXPECT_EQ(archive(m_file), GetParam().result);
  expectOnlyWhole(0);
  ASSERT_TRUE(disk.setReadOnly(false));
  EXPECT_EQ(archive(m_file), arArchived);
  expectOnlyWhole(1);
}

TEST_P(ReadOnlyArchive, WithoutTheRightToWriteIntoTheFolder) {
  prepare();
  const NativePath folder(m_tree.path(GetParam().folder));
  const perms former = std::filesystem::status(folder.get()).permissions();
  std::filesystem::permissions(NativePath(m_tree.root()).get(), kSearchable | perms::owner_write);
  std::filesystem::permissions(folder.get(), kSearchable);
  {
    const PAKU_3_1::internal::OrdinaryUser user;
    if (!user.isOrdinary())
      GTEST_SKIP() << "cannot become an ordinary user";
    EXPECT_EQ(archive(m_file), GetParam().result);
  }
  std::filesystem::permissions(folder.get(), former);
  expectOnlyWhole(0);
  EXPECT_EQ(archive(m_file), arArchived);
  expectOnlyWhole(1);
}

INSTANTIATE_TEST_SUITE_P(
    Folders,
    ReadOnlyArchive,
    testing::Values(Prepared{"None", "disk", arCannotCreateDirectory},
                    Prepared{"Archive", "disk/archive", arCannotCreateDirectory},
                    Prepared{"Category", "disk/archive/binaries", arCannotCreateDirectory},
                    Prepared{"Name", "disk/archive/binaries/app.dll", arCannotCreateDirectory},
                    Prepared{"Checksum",
                             "disk/archive/binaries/app.dll/0cc175b9c0f1b6a831c399e269772661",
                             arCopyFailed}),
    [](const auto& row) { return std::string(row.param.title); });

class ReadOnlyFile : public FaultyArchive {
 protected:
  std::filesystem::path target() const {
    return NativePath(archiveDir()).get() / "binaries/app.dll" / kMd5OfA / "app.dll";
  }
  static perms permissionsOf(const std::filesystem::path& file) {
    return std::filesystem::status(file).permissions();
  }
};

TEST_F(ReadOnlyFile, BecomesACopyThatItsOwnerMayReplace) {
  const std::wstring file = m_tree.addFile("app.dll", "a");
  std::filesystem::permissions(NativePath(file).get(), kReadOnly);
  EXPECT_EQ(archive(file), arArchived);
  EXPECT_EQ(permissionsOf(target()), kReadOnly | perms::owner_write);
  EXPECT_EQ(permissionsOf(NativePath(file).get()), kReadOnly) << "the original stays as it was";
  expectOnlyWhole(1);
}

TEST_F(ReadOnlyFile, UnderTheFinalNameCountsAsArchivedAndStays) {
  const std::wstring file = m_tree.addFile("app.dll", "a");
  ASSERT_EQ(archive(file), arArchived);
  std::filesystem::permissions(target(), kReadOnly);
  EXPECT_EQ(archive(file), arAlreadyArchived);
  EXPECT_EQ(permissionsOf(target()), kReadOnly);
}

TEST_F(ReadOnlyFile, InAReadOnlyArchiveCountsAsArchived) {
  ScopedFileSystem disk(m_tree.path("disk"), "");
  if (!disk.refusal().empty())
    GTEST_SKIP() << disk.refusal();
  const std::wstring file = m_tree.addFile("app.dll", "a");
  ASSERT_EQ(archive(file), arArchived);
  ASSERT_TRUE(disk.setReadOnly(true));
  EXPECT_EQ(archive(file), arAlreadyArchived);
  expectOnlyWhole(1);
}

}  // namespace
}  // namespace quiver_test
