// The example tables of path_utils.h, and the edges of each function.

#include "os/path_utils.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "os/letter_case.h"
#include "os/user_name.h"
#include "support/scoped_directory.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

using quiver_test::ScopedVariable;
using quiver_test::TempTree;

// One function of one path: a row per example.

struct PathRow {
  const char* name;
  std::function<std::wstring(const wchar_t*)> function;
  const wchar_t* input;
  const wchar_t* expected;
};

class PathUtils : public ::testing::TestWithParam<PathRow> {};

TEST_P(PathUtils, GivesTheResultOfTheTable) {
  EXPECT_EQ(GetParam().function(GetParam().input), GetParam().expected);
}

// The case texts may contain anything; the name of a row is its own.
std::string rowName(const ::testing::TestParamInfo<PathRow>& info) {
  return info.param.name;
}

const PathRow kFileNames[] = {
    {"LastComponent", fileNameOf, LR"(C:\x\a.dll)", L"a.dll"},
    {"BareName", fileNameOf, L"a.dll", L"a.dll"},
    {"MixedSeparators", fileNameOf, LR"(C:/x\a.dll)", L"a.dll"},
    {"DirectoryTextHasAFileNameToo", fileNameOf, LR"(C:\dir)", L"dir"},
    {"TrailingSeparatorHasNone", fileNameOf, LR"(C:\dir\)", L""},
    {"DotsAreNoFileName", fileNameOf, LR"(C:\x\..)", L""},
    {"Null", fileNameOf, nullptr, L""},
};
INSTANTIATE_TEST_SUITE_P(FileName, PathUtils, ::testing::ValuesIn(kFileNames), rowName);

const PathRow kParts[] = {
    {"Base", baseNameOf, LR"(C:\x\a.dll)", L"a"},
    {"BaseEndsAtTheLastDot", baseNameOf, L"a.b.dll", L"a.b"},
    {"BaseOfALeadingDot", baseNameOf, L".profile", L".profile"},
    {"Extension", extensionOf, LR"(C:\x\a.dll)", L".dll"},
    {"NoExtension", extensionOf, LR"(C:\x.y\a)", L""},
    {"LeadingDotIsNoExtension", extensionOf, L".profile", L""},
    {"Directory", directoryOf, LR"(C:\x\a.dll)", LR"(C:\x\)"},
    {"DirectoryOfABareName", directoryOf, L"a.dll", L""},
};
INSTANTIATE_TEST_SUITE_P(Parts, PathUtils, ::testing::ValuesIn(kParts), rowName);

const PathRow kParents[] = {
    {"Drive", parentDirectory, LR"(C:\bin\)", LR"(C:\)"},
    {"FileNameIsDropped", parentDirectory, LR"(C:\a\b\f.dll)", LR"(C:\a\)"},
    {"DriveRoot", parentDirectory, LR"(C:\)", L""},
    {"Share", parentDirectory, LR"(\\srv\share\bin\)", LR"(\\srv\share\)"},
    {"RelativeTop", parentDirectory, LR"(bin\)", L""},
    {"BareName", parentDirectory, L"app.exe", L""},
    {"Null", parentDirectory, nullptr, L""},
};
INSTANTIATE_TEST_SUITE_P(Parent, PathUtils, ::testing::ValuesIn(kParents), rowName);

const PathRow kWithoutFirst[] = {
    {"DriveIsTheFirst", dropFirstDirectory, LR"(C:\build\src\a.cpp)", LR"(build\src\a.cpp)"},
    {"FileInTheRoot", dropFirstDirectory, LR"(C:\a.cpp)", L"a.cpp"},
    {"LoneLeadingSeparatorSticks", dropFirstDirectory, LR"(\a\b\f.dll)", LR"(b\f.dll)"},
    {"LastDirectory", dropFirstDirectory, LR"(\b\f.dll)", L"f.dll"},
    {"Relative", dropFirstDirectory, LR"(a\b\f.dll)", LR"(b\f.dll)"},
    {"Share", dropFirstDirectory, LR"(\\srv\share\a\f.dll)", LR"(a\f.dll)"},
    {"BareName", dropFirstDirectory, L"f.dll", L""},
    {"Empty", dropFirstDirectory, L"", L""},
};
INSTANTIATE_TEST_SUITE_P(DropFirst, PathUtils, ::testing::ValuesIn(kWithoutFirst), rowName);

const PathRow kSearchNames[] = {
    {"DrivePath", searchName, LR"(C:\work\proj\x.cpp)", LR"(work\proj\x.cpp)"},
    {"DriveAlone", searchName, LR"(C:\)", L""},
    {"Relative", searchName, LR"(src\a.cpp)", LR"(src\a.cpp)"},
    {"RelativeKeepsItsSpelling", searchName, LR"(.\src\\a.cpp)", LR"(.\src\\a.cpp)"},
    {"BareName", searchName, L"a.cpp", L"a.cpp"},
    {"RootedWithoutDrive", searchName, LR"(\src\a.cpp)", LR"(\src\a.cpp)"},
    {"Null", searchName, nullptr, L""},
};
INSTANTIATE_TEST_SUITE_P(SearchName, PathUtils, ::testing::ValuesIn(kSearchNames), rowName);

const PathRow kStripped[] = {
    {"Backslashes", stripTrailingSeparators, LR"(C:\dir\\)", LR"(C:\dir)"},
    {"Slashes", stripTrailingSeparators, L"/dir//", L"/dir"},
    {"Mixed", stripTrailingSeparators, LR"(dir/\/)", L"dir"},
    {"NothingToStrip", stripTrailingSeparators, L"/dir", L"/dir"},
    {"OnlySeparators", stripTrailingSeparators, LR"(\\)", LR"(\\)"},
    {"OneSeparator", stripTrailingSeparators, L"/", L"/"},
    {"Empty", stripTrailingSeparators, L"", L""},
    {"Null", stripTrailingSeparators, nullptr, L""},
};
INSTANTIATE_TEST_SUITE_P(Strip, PathUtils, ::testing::ValuesIn(kStripped), rowName);

// One function of a path and one more text.

struct PairRow {
  const char* name;
  std::function<std::wstring(const wchar_t*, const wchar_t*)> function;
  const wchar_t* first;
  const wchar_t* second;
  const wchar_t* expected;
};

class PathPairs : public ::testing::TestWithParam<PairRow> {};

TEST_P(PathPairs, GiveTheResultOfTheTable) {
  EXPECT_EQ(GetParam().function(GetParam().first, GetParam().second), GetParam().expected);
}

std::wstring append(const wchar_t* path, const wchar_t* dir) {
  return appendDirectory(path, dir);
}

const PairRow kPairs[] = {
    {"JoinWindows", joinPath, LR"(D:\arch)", L"a.dll", LR"(D:\arch\a.dll)"},
    {"JoinAfterASeparator", joinPath, LR"(D:\arch\)", L"a.dll", LR"(D:\arch\a.dll)"},
    {"JoinAbsoluteName", joinPath, LR"(D:\arch)", LR"(C:\a.dll)", LR"(C:\a.dll)"},
    {"JoinKeepsTheAbsoluteSpelling",
     joinPath,
     LR"(D:\arch)",
     LR"(C:\x\..\a.dll)",
     LR"(C:\x\..\a.dll)"},
    {"AppendWindows", append, LR"(C:\res)", L"all", LR"(C:\res\all\)"},
    {"ExtensionWithItsDot", replaceExtension, LR"(C:\bin\app.exe)", L".pdb", LR"(C:\bin\app.pdb)"},
    {"ExtensionWithoutItsDot",
     replaceExtension,
     LR"(C:\bin\app.exe)",
     L"pdb",
     LR"(C:\bin\app.pdb)"},
    {"ExtensionKeepsTheDirectoryText",
     replaceExtension,
     L"C:/bin/app.exe",
     L".pdb",
     L"C:/bin/app.pdb"},
    {"ExtensionOfNothing", replaceExtension, L"", L".pdb", L".pdb"},
    {"ExtensionRemoved", replaceExtension, L"app.exe", L"", L"app"},
    {"FileName", replaceFileName, LR"(C:\bin\app.exe)", L"b.dll", LR"(C:\bin\b.dll)"},
    {"FileNameOfABareName", replaceFileName, L"app.exe", L"b.dll", L"b.dll"},
};
INSTANTIATE_TEST_SUITE_P(Pairs, PathPairs, ::testing::ValuesIn(kPairs), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(IsEmpty, IsTrueForNullAndForNoText) {
  EXPECT_TRUE(isEmpty(nullptr));
  EXPECT_TRUE(isEmpty(L""));
  EXPECT_FALSE(isEmpty(L" "));
}

TEST(CompareIgnoreCase, TreatsLettersOfBothCasesAlike) {
  EXPECT_EQ(compareIgnoreCase(L"abc", L"ABC"), 0);
  EXPECT_EQ(compareIgnoreCase(LR"(c:\Dir\f.DLL)", LR"(C:\dir\F.dll)"), 0);
}

TEST(CompareIgnoreCase, OrdersByTheFirstDifference) {
  EXPECT_LT(compareIgnoreCase(L"abc", L"ABD"), 0);
  EXPECT_GT(compareIgnoreCase(L"b", L"ABC"), 0);
  EXPECT_LT(compareIgnoreCase(L"ab", L"ABC"), 0);
  EXPECT_GT(compareIgnoreCase(L"ABC", L"ab"), 0);
}

TEST(CompareIgnoreCase, FoldsToLowerCase) {
  EXPECT_GT(compareIgnoreCase(L"A", L"_"), 0);
  EXPECT_LT(compareIgnoreCase(L"_", L"a"), 0);
}

TEST(CompareIgnoreCase, TakesNullAsEmpty) {
  EXPECT_EQ(compareIgnoreCase(nullptr, nullptr), 0);
  EXPECT_EQ(compareIgnoreCase(nullptr, L""), 0);
  EXPECT_LT(compareIgnoreCase(nullptr, L"a"), 0);
  EXPECT_GT(compareIgnoreCase(L"a", nullptr), 0);
}

TEST(HashIgnoreCase, MeetsWhereTheComparisonDoes) {
  EXPECT_EQ(internal::hashIgnoreCase(L"/Src/A.CPP"), internal::hashIgnoreCase(L"/src/a.cpp"));
  EXPECT_EQ(internal::hashIgnoreCase(nullptr), internal::hashIgnoreCase(L""));
  EXPECT_NE(internal::hashIgnoreCase(L"/src/a.cpp"), internal::hashIgnoreCase(L"/src/b.cpp"));
  EXPECT_NE(internal::hashIgnoreCase(L"ab"), internal::hashIgnoreCase(L"ba"));
}

TEST(ToUpperCase, RaisesLettersOnly) {
  EXPECT_EQ(toUpperCase(L"a-z_09Q"), L"A-Z_09Q");
  EXPECT_EQ(toUpperCase(L""), L"");
}

TEST(StartsWithIgnoreCase, ComparesThePrefixOnly) {
  EXPECT_TRUE(internal::startsWithIgnoreCase(L"SRV*x", L"srv*"));
  EXPECT_TRUE(internal::startsWithIgnoreCase(L"srv*", L"SRV*"));
  EXPECT_FALSE(internal::startsWithIgnoreCase(L"srv", L"srv*"));
  EXPECT_FALSE(internal::startsWithIgnoreCase(nullptr, L"srv*"));
  EXPECT_TRUE(internal::startsWithIgnoreCase(nullptr, L""));
}

TEST(ToCanonicalAbsolutePath, IsAbsoluteAndTidy) {
  TempTree tree;
  const std::wstring root = tree.root();
  EXPECT_EQ(toCanonicalAbsolutePath((root + L"/./x/../a.cpp").c_str(), false),
            toCanonicalAbsolutePath((root + L"/a.cpp").c_str(), false));
  EXPECT_EQ(toCanonicalAbsolutePath((root + L"/dir//").c_str(), true),
            toCanonicalAbsolutePath((root + L"/dir").c_str(), true));
}

TEST(ToCanonicalAbsolutePath, AgreesForTwoSpellingsOfAWindowsDirectory) {
  const std::wstring a = toCanonicalAbsolutePath(LR"(C:\Dir)", true);
  const std::wstring b = toCanonicalAbsolutePath(LR"(c:\dir\)", true);
  EXPECT_EQ(compareIgnoreCase(a.c_str(), b.c_str()), 0);
  EXPECT_EQ(a, LR"(C:\Dir)");
}

TEST(ToCanonicalAbsolutePath, TakesARelativePathFromTheCurrentDirectory) {
  TempTree tree;
  const quiver_test::ScopedDirectory inTree(tree.root());
  EXPECT_EQ(toCanonicalAbsolutePath(L"./a.cpp", false), tree.path("a.cpp"));
}

TEST(ToCanonicalAbsolutePath, LeavesNothingAsNothing) {
  EXPECT_EQ(toCanonicalAbsolutePath(L"", false), L"");
  EXPECT_EQ(toCanonicalAbsolutePath(nullptr, true), L"");
}

TEST(ToCanonicalAbsolutePath, KeepsServerElementsApart) {
  EXPECT_NE(toCanonicalAbsolutePath(LR"(srv*D:\cache*https://one/x)", true),
            toCanonicalAbsolutePath(LR"(srv*D:\cache*https://two/x)", true));
}

TEST(ToAbsolutePath, DoesNotTidy) {
  TempTree tree;
  const std::wstring path = tree.root() + L"/x/../a.cpp";
  EXPECT_EQ(toAbsolutePath(path.c_str()), path);
}

struct SplitRow {
  const char* name;
  const wchar_t* text;
  std::vector<std::wstring> expected;
};

class SplitString : public ::testing::TestWithParam<SplitRow> {};

TEST_P(SplitString, FollowsTheTable) {
  std::vector<std::wstring> out = {L"left over"};
  splitString(GetParam().text, L';', out);
  EXPECT_EQ(out, GetParam().expected);
}

const SplitRow kSplits[] = {
    {"OneElement", L"a", {L"a"}},
    {"TwoElements", L"a;b", {L"a", L"b"}},
    {"TrailingSeparatorStays", L"a;b;", {L"a", L"b;"}},
    {"TrailingSeparatorOfDirectories", LR"(C:\a;C:\b;)", {LR"(C:\a)", LR"(C:\b;)"}},
    {"EmptyInTheMiddle", L"a;;b", {L"a", L"", L"b"}},
    {"EmptyAtTheStart", L";a", {L"", L"a"}},
    {"OnlyASeparator", L";", {L";"}},
    {"TwoSeparators", L";;", {L"", L";"}},
    {"NothingTrimmed", L" a ;\"b\"", {L" a ", L"\"b\""}},
    {"OtherSeparatorsStay", L"a:b", {L"a:b"}},
    {"Empty", L"", {}},
    {"Null", nullptr, {}},
};
INSTANTIATE_TEST_SUITE_P(Table, SplitString, ::testing::ValuesIn(kSplits), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(GetEnvironmentVariable, ReadsTheVariable) {
  ScopedVariable variable("QUIVER_TEST_VARIABLE", "one two");
  EXPECT_EQ(getEnvironmentVariable(L"QUIVER_TEST_VARIABLE"), L"one two");
}

TEST(GetEnvironmentVariable, IsEmptyWhenUnset) {
  ScopedVariable variable("QUIVER_TEST_VARIABLE");
  EXPECT_EQ(getEnvironmentVariable(L"QUIVER_TEST_VARIABLE"), L"");
  EXPECT_EQ(getEnvironmentVariable(nullptr), L"");
}

TEST(GetUserName, IsNeverEmpty) {
  EXPECT_NE(getUserName(), L"");
}

TEST(GetUserName, FallsBackToAFixedName) {
  EXPECT_EQ(internal::userNameOrUnknown(L""), L"unknown_user");
  EXPECT_EQ(internal::userNameOrUnknown(L"ada"), L"ada");
}

TEST(IsReadable, IsTrueForRegularFilesOnly) {
  TempTree tree;
  EXPECT_TRUE(isReadable(tree.addFile("a.txt").c_str()));
  EXPECT_FALSE(isReadable(tree.addDirectory("dir").c_str()));
  EXPECT_FALSE(isReadable(tree.path("missing").c_str()));
  EXPECT_FALSE(isReadable(L""));
  EXPECT_FALSE(isReadable(nullptr));
}

TEST(FileStatus, TellsFilesFromDirectories) {
  TempTree tree;
  internal::FileStatus status;
  ASSERT_TRUE(internal::fileStatus(tree.addFile("a.txt", "12345").c_str(), status));
  EXPECT_FALSE(status.isDirectory);
  EXPECT_EQ(status.size, 5);
  ASSERT_TRUE(internal::fileStatus(tree.addDirectory("dir").c_str(), status));
  EXPECT_TRUE(status.isDirectory);
}

TEST(FileStatus, IgnoresTrailingSeparators) {
  TempTree tree;
  const std::wstring dir = tree.addDirectory("dir");
  internal::FileStatus status;
  EXPECT_TRUE(internal::fileStatus((dir + L"/").c_str(), status) && status.isDirectory);
  EXPECT_TRUE(internal::fileStatus(L"/", status) && status.isDirectory);
}

TEST(FileStatus, IsZeroForWhatCannotBeExamined) {
  internal::FileStatus status{true, 1, 1};
  EXPECT_FALSE(internal::fileStatus(L"", status));
  EXPECT_FALSE(status.isDirectory);
  EXPECT_EQ(status.modificationTime, 0);
  EXPECT_EQ(status.size, 0);
  EXPECT_FALSE(internal::fileStatus(nullptr, status));
}

TEST(IsReadable, IsFalseForWhatCannotBeReadAndDoesNotWait) {
  TempTree tree;
  EXPECT_FALSE(isReadable(tree.addUnreadableFile("unreadable").c_str()));
}

}  // namespace
}  // namespace QV_2_9
