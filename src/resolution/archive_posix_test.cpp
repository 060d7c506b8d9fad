// Tests of archiving that need what only POSIX file systems have.

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "resolution/archive.h"
#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace QV_2_9::internal {
namespace {

using quiver_test::NativePath;
using quiver_test::ScopedDirectory;
using quiver_test::TempTree;

constexpr std::int64_t kDay = 24 * 60 * 60;

archive_result_t archive(const TempTree& tree,
                         const std::wstring& file,
                         std::int64_t now = std::time(nullptr)) {
  return archiveInto(tree.path("archive").c_str(), file.c_str(), scBinaryFiles, now);
}

TEST(ArchivePosix, CopyThatCannotBeWrittenIsReportedAndLeavesNothing) {
  if (!std::filesystem::is_directory("/proc/self"))
    GTEST_SKIP() << "needs a directory in which nobody can make files";
  TempTree tree;
  const char* const folder = "archive/binaries/app.dll/0cc175b9c0f1b6a831c399e269772661";
  tree.addLink(folder, "/proc/self");
  EXPECT_EQ(archive(tree, tree.addFile("app.dll", "a")), arCopyFailed);
  EXPECT_FALSE(std::filesystem::exists(NativePath(tree.path(folder) + L"/app.dll").get()));
}

TEST(ArchivePosix, FolderThatCannotBeMadeIsReported) {
  if (!std::filesystem::is_directory("/proc/self"))
    GTEST_SKIP() << "needs a directory in which nobody can make files";
  TempTree tree;
  tree.addLink("archive", "/proc/self");
  EXPECT_EQ(archive(tree, tree.addFile("app.dll", "a")), arCannotCreateDirectory);
}

TEST(ArchivePosix, DanglingLinkUnderTheFinalNameIsReplaced) {
  TempTree tree;
  const std::string target = "archive/binaries/app.dll/0cc175b9c0f1b6a831c399e269772661/app.dll";
  tree.addLink(target, "nowhere");
  EXPECT_EQ(archive(tree, tree.addFile("app.dll", "a")), arArchived);
  EXPECT_TRUE(std::filesystem::is_regular_file(NativePath(tree.path(target)).get()));
}

TEST(ArchivePosix, WhatKilledProcessesLeftGoesWithTheNextCallForTheVersion) {
  TempTree tree;
  const std::wstring file = tree.addFile("app.dll", "a");
  const std::string folder = "archive/binaries/app.dll/0cc175b9c0f1b6a831c399e269772661/";
  const std::wstring left = tree.addFile(folder + ".paku-1-0.tmp", "half");
  const std::int64_t now = std::time(nullptr);
  EXPECT_EQ(archive(tree, file, now), arArchived);
  EXPECT_TRUE(std::filesystem::exists(left)) << "somebody may be writing it";
  EXPECT_EQ(archive(tree, file, now + kDay + 60), arAlreadyArchived);
  EXPECT_FALSE(std::filesystem::exists(left));
  EXPECT_TRUE(std::filesystem::exists(tree.path(folder + "app.dll")));
}

TEST(ArchivePosix, FileThatIsCalledLikeACopyInTheMakingIsKept) {
  TempTree tree;
  const std::wstring file = tree.addFile(".paku-1-0.tmp", "a");
  const std::int64_t now = std::time(nullptr);
  EXPECT_EQ(archive(tree, file, now), arArchived);
  EXPECT_EQ(archive(tree, file, now + kDay + 60), arAlreadyArchived);
}

class ArchiveForeignDirectoryPosix : public testing::TestWithParam<const wchar_t*> {};

TEST_P(ArchiveForeignDirectoryPosix, IsNotMadeInTheCurrentDirectory) {
  TempTree tree;
  tree.addDirectory("cwd");
  const std::wstring file = tree.addFile("app.dll", "a");
  const ScopedDirectory inside(tree.path("cwd"));
  EXPECT_EQ(archiveInto(GetParam(), file.c_str(), scBinaryFiles, std::time(nullptr)),
            arCannotCreateDirectory);
  EXPECT_TRUE(std::filesystem::is_empty("."));
}

INSTANTIATE_TEST_SUITE_P(
    Directories,
    ArchiveForeignDirectoryPosix,
    testing::Values(L"C:\\results\\r1", L"C:/results/r1", L"\\\\srv\\share\\r1", L"C:\\"),
    [](const auto& row) { return "Directory" + std::to_string(row.index); });

struct ForeignName {
  const char* title;
  const wchar_t* name;
  archive_result_t result;
};

class ArchiveForeignNamePosix : public testing::TestWithParam<ForeignName> {};

TEST_P(ArchiveForeignNamePosix, NeverLeadsOutOfTheArchive) {
  TempTree tree;
  tree.addDirectory("cwd");
  const ScopedDirectory inside(tree.path("cwd"));
  EXPECT_EQ(archive(tree, tree.addFile(GetParam().name, "a")), GetParam().result);
  EXPECT_TRUE(std::filesystem::is_empty("."));
  std::size_t entries = 0;
  for ([[maybe_unused]] const auto& entry :
       std::filesystem::directory_iterator(NativePath(tree.root()).get()))
    ++entries;
  EXPECT_EQ(entries, 3u) << "the archive, the file, and the current directory";
}

INSTANTIATE_TEST_SUITE_P(
    Names,
    ArchiveForeignNamePosix,
    testing::Values(ForeignName{"Drive", L"C:\\x.dll", arCannotCreateDirectory},
                    ForeignName{"Share", L"\\\\srv\\share\\x.dll", arCannotCreateDirectory},
                    ForeignName{"DriveAlone", L"C:", arArchived},
                    ForeignName{"Rooted", L"\\x.dll", arArchived},
                    ForeignName{"Backslash", L"we\\ird.dll", arArchived},
                    ForeignName{"Upwards", L"..\\..\\x.dll", arArchived},
                    ForeignName{"UpwardsAlone", L"..\\..", arArchived}),
    [](const auto& row) { return std::string(row.param.title); });

}  // namespace
}  // namespace QV_2_9::internal
