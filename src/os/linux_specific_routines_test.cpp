// Directories of a Linux system, from variables that the tests set.

#include "os/linux_specific_routines.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/environment.h"

#include "os/directory_recorder.h"
#include "os/path_utils.h"
#include "support/scoped_environment.h"

namespace QV_2_9 {
namespace {

using quiver_test::CandidateRecorder;
using quiver_test::DirectoryRecorder;
using quiver_test::RecordedDirectory;
using quiver_test::ScopedVariable;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Pair;

/// The directories with that of the kernel's modules behind them, on a system that has a release.
std::vector<RecordedDirectory> withModules(std::vector<RecordedDirectory> dirs) {
  const std::wstring release = PAKU_3_1::systemRelease();
  if (!release.empty())
    dirs.emplace_back(L"/lib/modules/" + release, true);
  return dirs;
}

std::vector<RecordedDirectory> binaryDirectories(const char* path) {
  ScopedVariable variable("PATH", path);
  LinuxSpecificRoutines routines;
  DirectoryRecorder dirs;
  routines.addBinSystemDirs(dirs);
  return dirs.added();
}

std::vector<RecordedDirectory> symbolDirectories(const char* symbolPath) {
  ScopedVariable variable("_NT_SYMBOL_PATH", symbolPath);
  LinuxSpecificRoutines routines;
  DirectoryRecorder dirs;
  routines.addSymSystemDirs(dirs);
  return dirs.added();
}

TEST(LinuxSpecificRoutines, PassesEveryElementOfThePathOnInOrder) {
  std::vector<RecordedDirectory> dirs = binaryDirectories("/b::/a:c;d:/e:");
  ASSERT_GE(dirs.size(), 5u);
  dirs.resize(5);
  EXPECT_THAT(dirs,
              ElementsAre(Pair(L"/b", false),
                          Pair(L"", false),
                          Pair(L"/a", false),
                          Pair(L"c;d", false),
                          Pair(L"/e:", false)));
}

TEST(LinuxSpecificRoutines, GoesOnToTheLibraryDirectoriesAndTheModules) {
  const std::vector<RecordedDirectory> dirs = binaryDirectories("");
  ASSERT_GE(dirs.size(), 4u);
  EXPECT_THAT(dirs[0], Pair(L"/usr/local/lib", false));
  EXPECT_THAT(dirs[1], Pair(L"/lib", false));
  EXPECT_THAT(dirs[2], Pair(L"/usr/lib", false));
  EXPECT_EQ(dirs.back(), withModules({dirs.back()}).back());
}

TEST(LinuxSpecificRoutines, AddsArchitectureDirectoriesThatExist) {
  const std::vector<RecordedDirectory> dirs = binaryDirectories("");
  for (std::size_t i = 3; i + 1 < dirs.size(); ++i) {
    internal::FileStatus status;
    EXPECT_TRUE(internal::fileStatus(dirs[i].first.c_str(), status) && status.isDirectory)
        << ::testing::PrintToString(dirs[i].first);
    EXPECT_FALSE(dirs[i].second);
  }
}

TEST(LinuxSpecificRoutines, AddsTheDirectoriesOfAnArchitectureOnceWhenTheyExist) {
  const std::vector<RecordedDirectory> dirs = binaryDirectories("");
  for (const wchar_t* dir : {L"/usr/lib/x86_64-linux-gnu",
                             L"/usr/lib/aarch64-linux-gnu",
                             L"/lib/i386-linux-gnu",
                             L"/lib64",
                             L"/usr/lib32"}) {
    internal::FileStatus status;
    const bool exists = internal::fileStatus(dir, status) && status.isDirectory;
    EXPECT_EQ(std::count(dirs.begin(), dirs.end(), RecordedDirectory(dir, false)), exists ? 1 : 0)
        << ::testing::PrintToString(std::wstring(dir));
  }
}

TEST(LinuxSpecificRoutines, SplitsTheSymbolPathAtSemicolonsOnly) {
  EXPECT_THAT(symbolDirectories(R"(c:\sym;srv*c:\cache*https://host/x;/home/me/sym)"),
              ElementsAreArray(withModules({{LR"(c:\sym)", false},
                                            {LR"(srv*c:\cache*https://host/x)", false},
                                            {L"/home/me/sym", false},
                                            {L"/usr/lib/debug", true}})));
}

TEST(LinuxSpecificRoutines, SymbolPathKeepsEmptyElementsAndATrailingSeparator) {
  EXPECT_THAT(symbolDirectories("/a;;/b;"),
              ElementsAreArray(withModules(
                  {{L"/a", false}, {L"", false}, {L"/b;", false}, {L"/usr/lib/debug", true}})));
}

TEST(LinuxSpecificRoutines, EmptySymbolPathLeavesTheDebugDirectory) {
  EXPECT_THAT(symbolDirectories(""), ElementsAreArray(withModules({{L"/usr/lib/debug", true}})));
}

TEST(LinuxSpecificRoutines, UnsetSymbolPathLeavesTheDebugDirectory) {
  ScopedVariable variable("_NT_SYMBOL_PATH");
  LinuxSpecificRoutines routines;
  DirectoryRecorder dirs;
  routines.addSymbolPathDirs(dirs);
  EXPECT_THAT(dirs.added(), ElementsAre(Pair(L"/usr/lib/debug", true)));
}

TEST(LinuxSpecificRoutines, SourcesHaveNoSystemDirectories) {
  LinuxSpecificRoutines routines;
  DirectoryRecorder dirs;
  routines.addSrcSystemDirs(dirs);
  EXPECT_THAT(dirs.added(), IsEmpty());
}

TEST(LinuxSpecificRoutines, ProposesNothingForAnAbsoluteName) {
  LinuxSpecificRoutines routines;
  CandidateRecorder results;
  for (const wchar_t* name : {LR"(\??\C:\dir\f.dll)", L"/usr/lib/libc.so", L""})
    EXPECT_FALSE(routines.findByAbsoluteName(name, results, 0));
  EXPECT_FALSE(routines.findByAbsoluteName(L"/usr/lib/libc.so", results, 2));
  EXPECT_THAT(results.offered(), IsEmpty());
}

TEST(LinuxSpecificRoutines, MapsEveryNameToItself) {
  LinuxSpecificRoutines routines;
  EXPECT_EQ(routines.mapFileName(LR"(C:\dir\..\f.dll)", 0), LR"(C:\dir\..\f.dll)");
  EXPECT_EQ(routines.mapFileName(L"/usr/lib/libc.so", 2), L"/usr/lib/libc.so");
  EXPECT_EQ(routines.mapFileName(nullptr, 0), L"");
}

struct ServerRow {
  const char* name;
  const wchar_t* path;
  bool expected;
};

class SymbolServerPath : public ::testing::TestWithParam<ServerRow> {};

TEST_P(SymbolServerPath, IsToldByItsBeginning) {
  LinuxSpecificRoutines routines;
  EXPECT_EQ(routines.isSymbolServerPath(GetParam().path), GetParam().expected);
}

const ServerRow kServers[] = {
    {"Srv", LR"(srv*c:\cache*https://host/x)", true},
    {"SrvInUpperCase", LR"(SRV*c:\cache)", true},
    {"SrvAlone", L"srv*", true},
    {"SymSrv", LR"(symsrv*symsrv.dll*c:\cache)", true},
    {"SymSrvInMixedCase", L"SymSrv*x", true},
    {"SrvWithoutTheStar", L"srv", false},
    {"SymSrvWithoutTheStar", L"symsrv", false},
    {"DirectoryCalledSrv", L"/srv*", false},
    {"Directory", LR"(c:\symbols)", false},
    {"OtherPrefix", LR"(cache*c:\cache)", false},
    {"Empty", L"", false},
    {"Null", nullptr, false},
};
INSTANTIATE_TEST_SUITE_P(Table,
                         SymbolServerPath,
                         ::testing::ValuesIn(kServers),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace QV_2_9
