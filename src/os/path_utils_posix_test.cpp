// Paths in the style of POSIX systems, and what those systems do with letters and user names.

#include <clocale>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "os/path_utils.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

using quiver_test::ScopedVariable;
using quiver_test::TempTree;

struct PosixRow {
  const char* name;
  std::function<std::wstring()> result;
  const wchar_t* expected;
};

class PosixPathUtils : public ::testing::TestWithParam<PosixRow> {};

TEST_P(PosixPathUtils, GivesTheResultOfTheTable) {
  EXPECT_EQ(GetParam().result(), GetParam().expected);
}

const PosixRow kRows[] = {
    {"FileName", [] { return fileNameOf(L"/usr/lib/liba.so"); }, L"liba.so"},
    {"BackslashInAFileName", [] { return fileNameOf(LR"(/x/we\ird.c)"); }, LR"(we\ird.c)"},
    {"DirectoryInTheRoot", [] { return directoryOf(L"/app"); }, L"/"},
    {"Directory", [] { return directoryOf(L"/usr/bin/app"); }, L"/usr/bin/"},
    {"Parent", [] { return parentDirectory(L"/usr/bin/"); }, L"/usr/"},
    {"ParentAtTheTop", [] { return parentDirectory(L"/usr/"); }, L"/"},
    {"ParentOfTheRoot", [] { return parentDirectory(L"/"); }, L""},
    {"SearchName", [] { return searchName(L"/build/src/a.cpp"); }, L"build/src/a.cpp"},
    {"SearchNameInTheRoot", [] { return searchName(L"/a.cpp"); }, L"a.cpp"},
    {"SearchNameOfTheRoot", [] { return searchName(L"/"); }, L""},
    {"Join", [] { return joinPath(L"/arch", L"a.so"); }, L"/arch/a.so"},
    {"JoinAbsoluteName", [] { return joinPath(L"/arch", L"/lib/a.so"); }, L"/lib/a.so"},
    {"Append", [] { return appendDirectory(L"/res/", L"all"); }, L"/res/all/"},
    {"AppendToNothing", [] { return appendDirectory(L"", L"all"); }, L"all/"},
    {"Extension", [] { return replaceExtension(L"/bin/app", L"pdb"); }, L"/bin/app.pdb"},
    {"CanonicalKeepsCase", [] { return toCanonicalAbsolutePath(L"/Src//./X/", true); }, L"/Src/X"},
    {"CanonicalRoot", [] { return toCanonicalAbsolutePath(L"/..", true); }, L"/"},
};
INSTANTIATE_TEST_SUITE_P(Table, PosixPathUtils, ::testing::ValuesIn(kRows), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(LetterCasePosix, DoesNotFollowTheLocale) {
  const std::string former = std::setlocale(LC_ALL, nullptr);
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  EXPECT_NE(compareIgnoreCase(L"\u00c9", L"\u00e9"), 0);
  EXPECT_EQ(toUpperCase(L"\u00e9a"), L"\u00e9A");
  std::setlocale(LC_ALL, former.c_str());
}

TEST(GetUserNamePosix, DoesNotAskTheEnvironment) {
  const std::wstring name = getUserName();
  ScopedVariable user("USER", "somebody-else");
  ScopedVariable login("LOGNAME", "somebody-else");
  EXPECT_EQ(getUserName(), name);
  EXPECT_NE(getUserName(), L"somebody-else");
}

TEST(FileStatusPosix, RoundsTimesBefore1970Down) {
  TempTree tree;
  const std::wstring file = tree.addFile("a.txt");
  tree.setModificationTime("a.txt", -2, 500000000);
  internal::FileStatus status;
  ASSERT_TRUE(internal::fileStatus(file.c_str(), status));
  EXPECT_EQ(status.modificationTime, -2);
}

TEST(FileStatusPosix, TakesABackslashAsPartOfTheName) {
  TempTree tree;
  tree.addDirectory("a");
  const std::wstring file = tree.addFile("a\\");
  internal::FileStatus status;
  ASSERT_TRUE(internal::fileStatus(file.c_str(), status));
  EXPECT_FALSE(status.isDirectory);
}

}  // namespace
}  // namespace QV_2_9
