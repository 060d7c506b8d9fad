// File names and their parts. The rows hold for this system's reading of a text; what differs
// between the styles is in path_syntax_test.cpp and canonical_path_test.cpp.

#include "paku/filename.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/filename_parts_test_support.h"
#include "paku/named_rows_test_support.h"

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace PAKU_3_1 {
namespace {

using internal::joined;
using internal::walkUp;
using internal::withoutFirstDirectory;

struct DropCase {
  const char* name;
  const wchar_t* path;
  const wchar_t* rest;
};

class FilenameDrop : public testing::TestWithParam<DropCase> {};

TEST_P(FilenameDrop, LeavesTheRestWithoutTheFirstDirectory) {
  EXPECT_EQ(withoutFirstDirectory(GetParam().path), GetParam().rest);
}

const DropCase kDropCases[] = {
    {"RecordedDrive", L"C:\\build\\src\\a.cpp", L"build\\src\\a.cpp"},
    {"RecordedProject", L"C:\\work\\proj\\x.cpp", L"work\\proj\\x.cpp"},
    {"RecordedFileOnDrive", L"C:\\a.cpp", L"a.cpp"},
    {"RecordedBareDrive", L"C:\\", L""},
    {"RecordedRooted", L"\\a\\b\\f.dll", L"b\\f.dll"},
    {"RecordedRootedOnce", L"b\\f.dll", L"f.dll"},
    {"RecordedShare", L"\\\\srv\\share\\x\\a.dll", L"x\\a.dll"},
    {"RecordedSlashes", L"C:/build/a.cpp", L"build\\a.cpp"},
    {"BareName", L"f.dll", L""},
};

INSTANTIATE_TEST_SUITE_P(Paths,
                         FilenameDrop,
                         testing::ValuesIn(kDropCases),
                         internal::byName<DropCase>);

struct WalkCase {
  const char* name;
  const wchar_t* path;
  std::vector<std::wstring> visited;
};

class FilenameWalk : public testing::TestWithParam<WalkCase> {};

TEST_P(FilenameWalk, VisitsEachDirectoryUpToTheRoot) {
  EXPECT_THAT(walkUp(GetParam().path), testing::ElementsAreArray(GetParam().visited));
}

const WalkCase kWalkCases[] = {
    {"RecordedDrive", L"C:\\bin\\app.exe", {L"C:\\bin\\", L"C:\\"}},
    {"RecordedShare",
     L"\\\\srv\\share\\bin\\a.exe",
     {L"\\\\srv\\share\\bin\\", L"\\\\srv\\share\\"}},
    {"RecordedRelative", L"bin\\app.exe", {L"bin\\"}},
    {"RecordedRooted", L"\\a\\b\\f.dll", {L"\\a\\b\\", L"\\a\\"}},
    {"FileInRoot", L"/app", {L"/"}},
    {"BareName", L"app.exe", {}},
    {"Empty", L"", {}},
};

INSTANTIATE_TEST_SUITE_P(Paths,
                         FilenameWalk,
                         testing::ValuesIn(kWalkCases),
                         internal::byName<WalkCase>);

struct JoinCase {
  const char* name;
  const wchar_t* base;
  const wchar_t* file;
  const wchar_t* joined;
};

class FilenameJoin : public testing::TestWithParam<JoinCase> {};

TEST_P(FilenameJoin, TakesTheWholeBaseAsDirectory) {
  EXPECT_EQ(joined(GetParam().base, GetParam().file), GetParam().joined);
}

const JoinCase kJoinCases[] = {
    {"Archive", L"D:\\arch", L"a.dll", L"D:\\arch\\a.dll"},
    {"ArchiveWithSeparator", L"D:\\arch\\", L"a.dll", L"D:\\arch\\a.dll"},
    {"ArchiveWithSlashes", L"D:/arch", L"a.dll", L"D:/arch\\a.dll"},
    {"RootedTakesTheDrive", L"D:\\arch", L"\\a.dll", L"D:\\a.dll"},
    {"AbsoluteStays", L"D:\\arch", L"C:/x//a.dll", L"C:/x//a.dll"},
    {"ShareStays", L"D:\\arch", L"\\\\s\\t\\a.dll", L"\\\\s\\t\\a.dll"},
    {"EmptyNameGivesTheBase", L"C:\\res", L"", L"C:\\res"},
    {"NothingStaysNothing", L"", L"", L""},
};

INSTANTIATE_TEST_SUITE_P(Paths,
                         FilenameJoin,
                         testing::ValuesIn(kJoinCases),
                         internal::byName<JoinCase>);

TEST(Filename, BuildsTheArchiveLayoutComponentByComponent) {
  std::wstring path = L"D:\\arch";
  for (const wchar_t* next : {L"binaries", L"a.dll", L"d41d8cd9", L"a.dll"})
    path = joined(path.c_str(), next);
  EXPECT_EQ(path, L"D:\\arch\\binaries\\a.dll\\d41d8cd9\\a.dll");
}

TEST(Filename, IsRelativeToTheCurrentDirectoryWithoutABase) {
  quiver_test::TempTree tree;
  const quiver_test::ScopedDirectory here(tree.root());
  EXPECT_EQ(joined(L"", L"a.dll"), tree.path("a.dll"));
  EXPECT_EQ(joined(L"sub", L"a.dll"), tree.path("sub/a.dll"));
  EXPECT_EQ(joined(L"sub", L""), tree.path("sub"));
}

TEST(Filename, TellsAbsoluteNames) {
  for (const wchar_t* path : {L"C:\\x", L"C:/x", L"\\\\srv\\share", L"\\\\?\\C:\\x"})
    EXPECT_TRUE(Filename(path).isAbsolute()) << path;
  for (const wchar_t* path : {L"", L"x", L"x\\y", L"\\x", L"x/y", L".."})
    EXPECT_FALSE(Filename(path).isAbsolute()) << path;
}

TEST(Filename, NullIsTheEmptyName) {
  const Filename name(static_cast<const wchar_t*>(nullptr));
  EXPECT_TRUE(name.isEmpty());
  EXPECT_TRUE(name.directories().isEmpty());
  EXPECT_EQ(name.baseWithExtension(), String());
  EXPECT_EQ(name.canonical().text(), String());
}

struct BaseCase {
  const char* name;
  const wchar_t* path;
  const wchar_t* base;
  const wchar_t* extension;
};

class FilenameBase : public testing::TestWithParam<BaseCase> {};

TEST_P(FilenameBase, SplitsAtTheExtension) {
  const Filename name(GetParam().path);
  EXPECT_EQ(name.baseWithoutExtension(), String(GetParam().base));
  EXPECT_EQ(name.extension(), String(GetParam().extension));
}

TEST_P(FilenameBase, PartsMakeTheWholeAgain) {
  const Filename name(GetParam().path);
  EXPECT_EQ(name.baseWithExtension().text(),
            name.baseWithoutExtension().text() + name.extension().text());
}

const BaseCase kBaseCases[] = {
    {"RecordedDrive", L"C:\\x\\a.dll", L"a", L".dll"},
    {"RecordedRelative", L"x\\a.dll", L"a", L".dll"},
    {"DotInDirectory", L"C:\\x.y\\app", L"app", L""},
    {"Profile", L"/etc/.profile", L".profile", L""},
    {"TwoDots", L"/x/a.tar.gz", L"a.tar", L".gz"},
    {"DirectoryOnly", L"/x/", L"", L""},
    {"ParentDirectory", L"C:\\x\\..", L"", L""},
    {"Empty", L"", L"", L""},
};

INSTANTIATE_TEST_SUITE_P(Paths,
                         FilenameBase,
                         testing::ValuesIn(kBaseCases),
                         internal::byName<BaseCase>);

struct ExtensionChange {
  const char* name;
  const wchar_t* path;
  const wchar_t* extension;
  const wchar_t* changed;
};

class FilenameExtension : public testing::TestWithParam<ExtensionChange> {};

TEST_P(FilenameExtension, IsReplacedInPlace) {
  Filename name(GetParam().path);
  name.setExtension(GetParam().extension);
  EXPECT_EQ(name.text(), String(GetParam().changed));
}

const ExtensionChange kExtensionChanges[] = {
    {"Guess", L"C:\\bin\\app.exe", L".pdb", L"C:\\bin\\app.pdb"},
    {"DirectoryAsWritten", L"C:/bin/app.exe", L".pdb", L"C:/bin/app.pdb"},
    {"WithoutDot", L"/bin/app.exe", L"pdb", L"/bin/app.pdb"},
    {"Removed", L"/bin/app.exe", L"", L"/bin/app"},
    {"Added", L"/bin/app", L".pdb", L"/bin/app.pdb"},
    {"OfTheEmptyName", L"", L".pdb", L".pdb"},
    {"DoubledSeparatorsAsWritten", L"/a//b/x.c", L".o", L"/a//b/x.o"},
};

INSTANTIATE_TEST_SUITE_P(Paths,
                         FilenameExtension,
                         testing::ValuesIn(kExtensionChanges),
                         internal::byName<ExtensionChange>);

TEST(Filename, ReplacesTheFileNameInPlace) {
  Filename name(L"C:/bin//app.exe");
  name.setBaseWithExtension(L"b.dll");
  EXPECT_EQ(name.text(), String(L"C:/bin//b.dll"));
  name.setBaseWithExtension(L"");
  EXPECT_EQ(name.text(), String(L"C:/bin//"));
}

TEST(Filename, GivesADirectoryWithoutSeparatorAFileName) {
  Filename name(L"C:\\dir", 0, true);
  EXPECT_EQ(name.path(), String(L"C:\\dir\\"));
  EXPECT_EQ(name.baseWithExtension(), String());
  name.setBaseWithExtension(L"a.dll");
  EXPECT_EQ(name.text(), String(L"C:\\dir\\a.dll"));
  EXPECT_EQ(name.baseWithExtension(), String(L"a.dll"));
}

TEST(Filename, AppendsADirectoryToADirectory) {
  for (const wchar_t* path : {L"C:\\res", L"C:\\res\\"}) {
    Filename name(path, 0, true);
    StringList directories = name.directories();
    directories.append(L"all");
    name.setDirectories(directories);
    EXPECT_EQ(name.text(), String(L"C:\\res\\all\\"));
  }
}

TEST(Filename, JoinsDirectoriesInTheStyleTheyCameFrom) {
  Filename name;
  name.setDirectories(Filename(L"C:/x/y/a").directories());
  EXPECT_EQ(name.text(), String(L"C:\\x\\y\\"));
}

TEST(Filename, IgnoresTheFormat) {
  EXPECT_EQ(Filename(L"C:\\x\\a.dll", 7).baseWithExtension(), String(L"a.dll"));
}

TEST(Filename, KeepsTheTextAsGiven) {
  for (const wchar_t* path : {L"C:/x\\\\a", L"/x//./a/", L"src\\a.cpp", L"srv*c:\\d*https://h/x"})
    EXPECT_EQ(Filename(path).text(), String(path));
}

TEST(StringList, RemovesAtBothEnds) {
  StringList list;
  list.append(L"a");
  list.append(L"b");
  list.append(L"c");
  list.removeHead();
  list.removeTail();
  EXPECT_THAT(list, testing::ElementsAre(String(L"b")));
}

TEST(StringList, RemovingFromAnEmptyListDoesNothing) {
  StringList list;
  list.removeHead();
  list.removeTail();
  EXPECT_TRUE(list.isEmpty());
  EXPECT_EQ(list.size(), 0u);
}

TEST(String, NullIsEmpty) {
  const String text(static_cast<const wchar_t*>(nullptr));
  EXPECT_TRUE(text.isEmpty());
  EXPECT_STREQ(text.wcharPtr(), L"");
}

}  // namespace
}  // namespace PAKU_3_1
