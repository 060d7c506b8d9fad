// Tests of archiving: through the context manager, with real files.

#include "resolution/archive.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "os/path_utils.h"
#include "quiver/checksum.h"
#include "quiver/source_file_validators.h"
#include "search/test_doubles.h"
#include "support/matchers.h"
#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

using quiver_test::NativePath;
using quiver_test::TempTree;

constexpr const char* kMd5OfA = "0cc175b9c0f1b6a831c399e269772661";
constexpr const char* kMd5OfB = "92eb5ffee6ae2fec3ad71c777531578f";
constexpr std::int64_t kLongAgo = 1000000000;

class ArchiveTest : public testing::Test {
 protected:
  ArchiveTest() {
    context = manager->createContext(tree.path("ctx").c_str(), true);
    manager->setArchiveDir(context.get(), tree.path("archive").c_str());
  }

  archive_result_t archive(const std::wstring& file, std::int32_t category = scBinaryFiles) const {
    return manager->archiveFile(context.get(), file.c_str(), category);
  }
  bool isFile(const std::string& name) const {
    return std::filesystem::is_regular_file(NativePath(tree.path(name)).get());
  }
  bool isDirectory(const std::string& name) const {
    return std::filesystem::is_directory(NativePath(tree.path(name)).get());
  }
  bool exists(const std::string& name) const { return isFile(name) || isDirectory(name); }
  void remove(const std::string& name) const {
    ASSERT_TRUE(std::filesystem::remove(NativePath(tree.path(name)).get()));
  }

  /// Expects every copy to lie in the folder of its own checksum.
  void expectChecksumsAsFolders() const {
    const ObjectPtr<IChecksumCalculator> calculator = IChecksumCalculator::create();
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(NativePath(tree.path("archive")).get())) {
      if (!entry.is_regular_file())
        continue;
      const auto checksum = calculator->calculate(entry.path().wstring().c_str(), ctMD5);
      ASSERT_TRUE(checksum);
      EXPECT_EQ(checksum->getValue(), entry.path().parent_path().filename().wstring());
    }
  }

  TempTree tree;
  ObjectPtr<IResolutionContextMgr> manager = IResolutionContextMgr::create();
  ObjectPtr<IResolutionContext> context;
};

struct FolderRow {
  const char* title;
  std::int32_t category;
  const char* folder;
};

class ArchiveLayout : public ArchiveTest, public testing::WithParamInterface<FolderRow> {};

TEST_P(ArchiveLayout, FilesTheCopyUnderCategoryNameAndChecksum) {
  const std::wstring file = tree.addFile("bin/app.dll", "a");
  EXPECT_EQ(archive(file, GetParam().category), arArchived);
  EXPECT_TRUE(
      isFile(std::string("archive/") + GetParam().folder + "/app.dll/" + kMd5OfA + "/app.dll"));
  EXPECT_TRUE(isFile("bin/app.dll"));
}

INSTANTIATE_TEST_SUITE_P(Categories,
                         ArchiveLayout,
                         testing::Values(FolderRow{"Binaries", scBinaryFiles, "binaries"},
                                         FolderRow{"Symbols", scSymbolFiles, "symbols"},
                                         FolderRow{"Sources", scSourceFiles, "sources"},
                                         FolderRow{"All", scAllFiles, "all"},
                                         FolderRow{"Zero", 0, "all"},
                                         FolderRow{"Five", 5, "all"}),
                         [](const auto& row) { return std::string(row.param.title); });

TEST_F(ArchiveTest, CodesAreWhatCallersKnow) {
  EXPECT_EQ(static_cast<int>(arArchived), 0);
  EXPECT_EQ(static_cast<int>(arNoChecksumCalculator), 2);
  EXPECT_EQ(static_cast<int>(arNoChecksum), 3);
  EXPECT_EQ(static_cast<int>(arCannotCreateDirectory), 4);
  EXPECT_EQ(static_cast<int>(arCopyFailed), 5);
  EXPECT_EQ(static_cast<int>(arAlreadyArchived), 6);
  EXPECT_EQ(static_cast<int>(arNoArchiveDir), 7);
}

TEST_F(ArchiveTest, SameVersionIsNotCopiedTwice) {
  const std::wstring file = tree.addFile("app.dll", "a");
  EXPECT_EQ(archive(file), arArchived);
  EXPECT_EQ(archive(file), arAlreadyArchived);
  EXPECT_EQ(archive(tree.addFile("copy/app.dll", "a")), arAlreadyArchived);
}

TEST_F(ArchiveTest, VersionsLieSideBySide) {
  EXPECT_EQ(archive(tree.addFile("v1/app.dll", "a")), arArchived);
  EXPECT_EQ(archive(tree.addFile("v2/app.dll", "b")), arArchived);
  const std::string dir = "archive/binaries/app.dll/";
  EXPECT_TRUE(isFile(dir + kMd5OfA + "/app.dll"));
  EXPECT_TRUE(isFile(dir + kMd5OfB + "/app.dll"));
}

// The other file takes the name while the first one is being read: a file of this size takes a
// while. Some systems keep the name of an open file.
TEST_F(ArchiveTest, FileThatIsReplacedMeanwhileIsNotFiledUnderTheFormersChecksum) {
  constexpr std::size_t kSize = 64'000'000;
  const std::wstring file = tree.addFile("app.dll", std::string(kSize, 'a'));
  const std::wstring other = tree.addFile("other.dll", std::string(kSize, 'b'));
  std::thread replacing([&] {
    while (!isDirectory("archive/binaries/app.dll")) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::error_code error;
    std::filesystem::rename(NativePath(other).get(), NativePath(file).get(), error);
  });
  EXPECT_EQ(archive(file), arArchived);
  replacing.join();
  EXPECT_THAT(archive(file), testing::AnyOf(arArchived, arAlreadyArchived));
  expectChecksumsAsFolders();
}

TEST_F(ArchiveTest, CopyKeepsTheModificationTime) {
  const std::wstring file = tree.addFile("main.c", "a");
  tree.setModificationTime("main.c", kLongAgo);
  ASSERT_EQ(archive(file, scSourceFiles), arArchived);
  internal::FileStatus status;
  const std::string copy = std::string("archive/sources/main.c/") + kMd5OfA + "/main.c";
  ASSERT_TRUE(internal::fileStatus(tree.path(copy).c_str(), status));
  EXPECT_EQ(status.modificationTime, kLongAgo);
  EXPECT_EQ(status.size, 1);
}

TEST_F(ArchiveTest, RelativePathsAreBelowTheCurrentDirectory) {
  const quiver_test::ScopedDirectory inTree(tree.root());
  tree.addFile("bin/app.dll", "a");
  manager->setArchiveDir(context.get(), L"near");
  EXPECT_EQ(archive(L"bin/app.dll"), arArchived);
  EXPECT_TRUE(isFile(std::string("near/binaries/app.dll/") + kMd5OfA + "/app.dll"));
}

TEST_F(ArchiveTest, SeparatorBehindTheArchiveDirMakesNoDifference) {
  manager->setArchiveDir(context.get(), tree.path("archive/").c_str());
  EXPECT_EQ(archive(tree.addFile("app.dll", "a")), arArchived);
  EXPECT_TRUE(isFile(std::string("archive/binaries/app.dll/") + kMd5OfA + "/app.dll"));
}

// --- 3

TEST_F(ArchiveTest, MissingFileHasNoChecksumAndLeavesTheFolders) {
  EXPECT_EQ(archive(tree.path("missing.dll")), arNoChecksum);
  EXPECT_TRUE(isDirectory("archive/binaries/missing.dll"));
  EXPECT_TRUE(
      std::filesystem::is_empty(NativePath(tree.path("archive/binaries/missing.dll")).get()));
}

TEST_F(ArchiveTest, DirectoryHasNoChecksum) {
  EXPECT_EQ(archive(tree.addDirectory("dir.dll")), arNoChecksum);
}

TEST_F(ArchiveTest, NoFileHasNoChecksum) {
  EXPECT_EQ(manager->archiveFile(context.get(), nullptr, scBinaryFiles), arNoChecksum);
  EXPECT_EQ(archive(L""), arNoChecksum);
}

TEST_F(ArchiveTest, DirectoryPartsAloneNeverLeaveTheArchive) {
  EXPECT_EQ(archive(tree.addDirectory("sub") + L"/.."), arNoChecksum);
  EXPECT_TRUE(isDirectory("archive/binaries"));
  EXPECT_TRUE(std::filesystem::is_empty(NativePath(tree.path("archive/binaries")).get()));
}

// --- 4

TEST_F(ArchiveTest, ArchiveDirIsMadeInAnExistingDirectoryOnly) {
  manager->setArchiveDir(context.get(), tree.path("no/such/archive").c_str());
  EXPECT_EQ(archive(tree.addFile("app.dll", "a")), arCannotCreateDirectory);
  EXPECT_FALSE(exists("no"));
}

class ArchiveBlocked : public ArchiveTest, public testing::WithParamInterface<const char*> {};

TEST_P(ArchiveBlocked, FileInPlaceOfAFolderStopsIt) {
  const std::wstring file = tree.addFile("app.dll", "a");
  tree.addFile(GetParam());
  EXPECT_EQ(archive(file), arCannotCreateDirectory);
  EXPECT_TRUE(isFile(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    Levels,
    ArchiveBlocked,
    testing::Values("archive",
                    "archive/binaries",
                    "archive/binaries/app.dll",
                    "archive/binaries/app.dll/0cc175b9c0f1b6a831c399e269772661"),
    [](const auto& row) { return "Level" + std::to_string(row.index); });

TEST_F(ArchiveTest, FoldersAreTriedBeforeTheFileIsRead) {
  tree.addFile("archive");
  EXPECT_EQ(archive(tree.path("missing.dll")), arCannotCreateDirectory);
}

// --- 6

TEST_F(ArchiveTest, AnythingUnderTheFinalNameCountsAsArchived) {
  const std::string target = std::string("archive/binaries/app.dll/") + kMd5OfA + "/app.dll";
  tree.addDirectory(target);
  EXPECT_EQ(archive(tree.addFile("app.dll", "a")), arAlreadyArchived);
  EXPECT_TRUE(isDirectory(target));
}

TEST_F(ArchiveTest, CopyItselfIsAlreadyArchived) {
  ASSERT_EQ(archive(tree.addFile("app.dll", "a")), arArchived);
  const std::string copy = std::string("archive/binaries/app.dll/") + kMd5OfA + "/app.dll";
  EXPECT_EQ(archive(tree.path(copy)), arAlreadyArchived);
  EXPECT_TRUE(isFile(copy));
}

// --- 7 and the walk through the contexts

TEST_F(ArchiveTest, NoArchiveDirAnywhere) {
  const ObjectPtr<IResolutionContext> bare = manager->createContext(tree.path("x").c_str(), true);
  const ObjectPtr<IResolutionContext> parent = manager->createContext(tree.path("y").c_str(), true);
  manager->setParentContext(bare.get(), parent.get());
  const std::wstring file = tree.addFile("app.dll", "a");
  EXPECT_EQ(manager->archiveFile(bare.get(), file.c_str(), scBinaryFiles), arNoArchiveDir);
  EXPECT_EQ(manager->archiveFile(nullptr, file.c_str(), scBinaryFiles), arNoArchiveDir);
}

TEST_F(ArchiveTest, ParentsArchiveServesAChildWithoutOne) {
  const ObjectPtr<IResolutionContext> child =
      manager->createContext(tree.path("child").c_str(), true);
  manager->setParentContext(child.get(), context.get());
  const std::wstring file = tree.addFile("app.dll", "a");
  EXPECT_EQ(manager->archiveFile(child.get(), file.c_str(), scBinaryFiles), arArchived);
  EXPECT_EQ(manager->archiveFile(child.get(), file.c_str(), scBinaryFiles), arAlreadyArchived);
  EXPECT_TRUE(exists("archive/binaries/app.dll"));
}

TEST_F(ArchiveTest, NearestArchiveDecidesAlsoWhenItFails) {
  const ObjectPtr<IResolutionContext> child =
      manager->createContext(tree.path("child").c_str(), true);
  manager->setParentContext(child.get(), context.get());
  manager->setArchiveDir(child.get(), tree.addFile("blocked").c_str());
  const std::wstring file = tree.addFile("app.dll", "a");
  EXPECT_EQ(manager->archiveFile(child.get(), file.c_str(), scBinaryFiles),
            arCannotCreateDirectory);
  EXPECT_FALSE(exists("archive"));
}

TEST_F(ArchiveTest, ResultDirArchivesIntoItself) {
  tree.addDirectory("res");
  const ObjectPtr<IResolutionContext> result =
      manager->getResultDirContext(tree.path("res").c_str());
  const std::wstring file = tree.addFile("main.c", "a");
  EXPECT_EQ(manager->archiveFile(result.get(), file.c_str(), scSourceFiles), arArchived);
  EXPECT_TRUE(isFile(std::string("res/archive/sources/main.c/") + kMd5OfA + "/main.c"));
}

// --- what was archived is found again

TEST_F(ArchiveTest, ArchiveStepFindsTheVersionThatTheChecksumNames) {
  internal::ScriptedRoutines system;
  ASSERT_EQ(archive(tree.addFile("v1/app.dll", "a")), arArchived);
  ASSERT_EQ(archive(tree.addFile("v2/app.dll", "b")), arArchived);
  remove("v1/app.dll");
  remove("v2/app.dll");
  for (const char* md5 : {kMd5OfA, kMd5OfB}) {
    const std::wstring text(md5, md5 + std::char_traits<char>::length(md5));
    const ObjectPtr<IChecksumCalculator> calculator = IChecksumCalculator::create();
    ChecksumValidator check(scBinaryFiles, calculator->createChecksum(ctMD5, text.c_str()));
    const ObjectPtr<IFileSearch> search =
        manager->createFileSearch(context.get(), nullptr, nullptr);
    EXPECT_THAT(search->findBinFile(tree.path("v1/app.dll").c_str(), &check, nullptr),
                quiver_test::IsValidFile(
                    tree.path(std::string("archive/binaries/app.dll/") + md5 + "/app.dll"),
                    0,
                    ssArchiveSearchDirs));
  }
}

TEST_F(ArchiveTest, ArchivedSourceStillHasItsRecordedTimeAndSize) {
  internal::ScriptedRoutines system;
  const std::wstring file = tree.addFile("main.c", "abc");
  tree.setModificationTime("main.c", kLongAgo);
  ASSERT_EQ(archive(file, scSourceFiles), arArchived);
  remove("main.c");
  SourceFileTimeAndSizeMatchValidator check(kLongAgo, 3);
  const ObjectPtr<IFileSearch> search = manager->createFileSearch(context.get(), nullptr, nullptr);
  const std::wstring copy =
      tree.path("archive/sources/main.c/900150983cd24fb0d6963f7d28e17f72/main.c");
  EXPECT_THAT(search->findSrcFile(file.c_str(), nullptr, nullptr, &check, nullptr),
              quiver_test::IsValidFile(copy, 0, ssArchiveSearchDirs));
}

TEST_F(ArchiveTest, UnreadableFileHasNoChecksum) {
  EXPECT_EQ(archive(tree.addUnreadableFile("unreadable.dll")), arNoChecksum);
}

}  // namespace
}  // namespace QV_2_9
