// The grammar of paths, in both styles on every system.

#include "paku/path_syntax.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/named_rows_test_support.h"

namespace PAKU_3_1::internal {
namespace {

using testing::ElementsAreArray;
using Components = std::vector<std::wstring>;

constexpr auto kP = PathStyle::kPosix;
constexpr auto kW = PathStyle::kWindows;

struct SplitCase {
  const char* name;
  PathStyle style;
  const wchar_t* text;
  std::size_t root;
  const wchar_t* directory;
  Components components;
  const wchar_t* fileName;
};

class PathSyntax : public testing::TestWithParam<SplitCase> {};

TEST_P(PathSyntax, FindsTheRoot) {
  EXPECT_EQ(rootLength(GetParam().text, GetParam().style), GetParam().root);
}

TEST_P(PathSyntax, EndsTheDirectoryWithASeparator) {
  EXPECT_EQ(directoryText(GetParam().text, GetParam().style, false), GetParam().directory);
}

TEST_P(PathSyntax, ListsTheDirectories) {
  EXPECT_THAT(directoryComponents(GetParam().text, GetParam().style, false),
              ElementsAreArray(GetParam().components));
}

TEST_P(PathSyntax, FindsTheFileName) {
  const std::wstring text = GetParam().text;
  EXPECT_EQ(text.substr(fileNameStart(text, GetParam().style, false)), GetParam().fileName);
}

const SplitCase kSplitCases[] = {
    {"WindowsDrive", kW, L"C:\\x\\a.dll", 2, L"C:\\x\\", {L"C:", L"x"}, L"a.dll"},
    {"WindowsDriveAndFile", kW, L"C:\\a.cpp", 2, L"C:\\", {L"C:"}, L"a.cpp"},
    {"WindowsDriveWithSlashes", kW, L"C:/bin/app.exe", 2, L"C:/bin/", {L"C:", L"bin"}, L"app.exe"},
    {"WindowsDriveRoot", kW, L"C:\\", 2, L"C:\\", {L"C:"}, L""},
    {"WindowsDriveAlone", kW, L"D:", 2, L"D:\\", {L"D:"}, L""},
    {"WindowsDriveRelative", kW, L"C:x", 0, L"", {}, L"C:x"},
    {"WindowsNoDriveLetter", kW, L"1:\\x", 0, L"1:\\", {L"1:"}, L"x"},
    {"WindowsDirectory", kW, L"C:\\dir", 2, L"C:\\", {L"C:"}, L"dir"},
    {"WindowsDirectoryWithSeparator", kW, L"C:\\dir\\", 2, L"C:\\dir\\", {L"C:", L"dir"}, L""},
    {"WindowsParentAtEnd", kW, L"C:\\x\\..", 2, L"C:\\x\\..\\", {L"C:", L"x", L".."}, L""},
    {"WindowsCurrentAtEnd", kW, L"C:\\x\\.", 2, L"C:\\x\\.\\", {L"C:", L"x", L"."}, L""},
    {"WindowsDoubledSeparators", kW, L"C:\\\\x\\\\a", 2, L"C:\\\\x\\\\", {L"C:", L"x"}, L"a"},
    {"WindowsRooted", kW, L"\\a\\b\\f.dll", 0, L"\\a\\b\\", {L"\\a", L"b"}, L"f.dll"},
    {"WindowsRootedFile", kW, L"\\f.dll", 0, L"\\", {}, L"f.dll"},
    {"WindowsRootedWithSlash", kW, L"/build/a.cpp", 0, L"/build/", {L"/build"}, L"a.cpp"},
    {"WindowsShare",
     kW,
     L"\\\\srv\\share\\bin\\a.exe",
     11,
     L"\\\\srv\\share\\bin\\",
     {L"\\\\srv\\share", L"bin"},
     L"a.exe"},
    {"WindowsShareWithSlashes",
     kW,
     L"//srv/share/a.exe",
     11,
     L"//srv/share/",
     {L"//srv/share"},
     L"a.exe"},
    {"WindowsShareAlone", kW, L"\\\\srv\\share", 11, L"\\\\srv\\share\\", {L"\\\\srv\\share"}, L""},
    {"WindowsServerAlone", kW, L"\\\\srv", 5, L"\\\\srv\\", {L"\\\\srv"}, L""},
    {"WindowsThreeSeparators", kW, L"\\\\\\a\\b", 0, L"\\\\\\a\\", {L"\\a"}, L"b"},
    {"WindowsOnlySeparators", kW, L"\\\\", 0, L"\\\\", {}, L""},
    {"WindowsLongDrive",
     kW,
     L"\\\\?\\C:\\x\\a.dll",
     6,
     L"\\\\?\\C:\\x\\",
     {L"\\\\?\\C:", L"x"},
     L"a.dll"},
    {"WindowsLongShare",
     kW,
     L"\\\\?\\UNC\\srv\\share\\x\\a.dll",
     17,
     L"\\\\?\\UNC\\srv\\share\\x\\",
     {L"\\\\?\\UNC\\srv\\share", L"x"},
     L"a.dll"},
    {"WindowsLongPrefixAlone", kW, L"\\\\?", 3, L"\\\\?\\", {L"\\\\?"}, L""},
    {"WindowsDevice", kW, L"\\\\.\\pipe\\x", 8, L"\\\\.\\pipe\\", {L"\\\\.\\pipe"}, L"x"},
    {"WindowsRelative", kW, L"bin\\app.exe", 0, L"bin\\", {L"bin"}, L"app.exe"},
    {"WindowsMixedSeparators", kW, L"a/b\\c", 0, L"a/b\\", {L"a", L"b"}, L"c"},
    {"WindowsBareName", kW, L"a.dll", 0, L"", {}, L"a.dll"},
    {"PosixAbsolute", kP, L"/usr/bin/app", 1, L"/usr/bin/", {L"/", L"usr", L"bin"}, L"app"},
    {"PosixRoot", kP, L"/", 1, L"/", {L"/"}, L""},
    {"PosixRootDoubled", kP, L"//", 1, L"//", {L"/"}, L""},
    {"PosixFileInRoot", kP, L"/app", 1, L"/", {L"/"}, L"app"},
    {"PosixBackslashInName", kP, L"/x/we\\ird.c", 1, L"/x/", {L"/", L"x"}, L"we\\ird.c"},
    {"PosixDriveIsAName", kP, L"C:", 0, L"", {}, L"C:"},
    {"PosixRelative", kP, L"src/a.cpp", 0, L"src/", {L"src"}, L"a.cpp"},
    {"PosixDoubledSeparators", kP, L"a//b///c", 0, L"a//b///", {L"a", L"b"}, L"c"},
    {"PosixParentAlone", kP, L"..", 0, L"../", {L".."}, L""},
    {"PosixCurrentAlone", kP, L".", 0, L"./", {L"."}, L""},
    {"PosixThreeDots", kP, L"x/...", 0, L"x/", {L"x"}, L"..."},
    {"Empty", kP, L"", 0, L"", {}, L""},
    {"WindowsEmpty", kW, L"", 0, L"", {}, L""},
};

INSTANTIATE_TEST_SUITE_P(Texts, PathSyntax, testing::ValuesIn(kSplitCases), byName<SplitCase>);

struct StyleCase {
  const char* name;
  const wchar_t* text;
  PathStyle style;
};

class RecordedStyle : public testing::TestWithParam<StyleCase> {};

TEST_P(RecordedStyle, FollowsFromTheText) {
  EXPECT_EQ(styleOfRecordedPath(GetParam().text), GetParam().style);
}

const StyleCase kStyleCases[] = {
    {"DriveAndBackslash", L"C:\\x", kW},
    {"DriveAndSlash", L"C:/x", kW},
    {"LowerCaseDrive", L"c:\\x", kW},
    {"DriveAlone", L"C:", kP},
    {"DriveRelative", L"C:x", kP},
    {"DigitDrive", L"1:/x", kP},
    {"LeadingBackslash", L"\\a/b", kW},
    {"Share", L"\\\\srv\\share", kW},
    {"OnlyBackslashes", L"src\\a.cpp", kW},
    {"BothSeparators", L"src/we\\ird.c", kP},
    {"AbsoluteWithBackslash", L"/x/we\\ird.c", kP},
    {"BareName", L"a.dll", kP},
    {"ServerElement", L"srv*D:\\cache*https://host/x", kP},
    {"Empty", L"", kP},
};

INSTANTIATE_TEST_SUITE_P(Texts, RecordedStyle, testing::ValuesIn(kStyleCases), byName<StyleCase>);

TEST(PathSyntaxDirectories, TakeTheWholeTextWhenItIsADirectory) {
  EXPECT_EQ(directoryText(L"C:\\dir", kW, true), L"C:\\dir\\");
  EXPECT_EQ(directoryText(L"/a/b", kP, true), L"/a/b/");
  EXPECT_THAT(directoryComponents(L"C:\\dir", kW, true), testing::ElementsAre(L"C:", L"dir"));
  EXPECT_EQ(fileNameStart(L"dir", kP, true), 3u);
  EXPECT_EQ(directoryText(L"", kP, true), L"");
}

struct ExtensionCase {
  const char* name;
  const wchar_t* fileName;
  const wchar_t* extension;
};

class Extension : public testing::TestWithParam<ExtensionCase> {};

TEST_P(Extension, BeginsAtTheLastDotThatIsNotFirst) {
  const std::wstring fileName = GetParam().fileName;
  EXPECT_EQ(fileName.substr(extensionStart(fileName)), GetParam().extension);
}

const ExtensionCase kExtensionCases[] = {
    {"Plain", L"a.dll", L".dll"},
    {"LastOfTwo", L"a.tar.gz", L".gz"},
    {"None", L"app", L""},
    {"OnlyALeadingDot", L".profile", L""},
    {"LeadingDotAndExtension", L".profile.bak", L".bak"},
    {"TrailingDot", L"a.", L"."},
    {"Empty", L"", L""},
    {"Dot", L".", L""},
};

INSTANTIATE_TEST_SUITE_P(Names,
                         Extension,
                         testing::ValuesIn(kExtensionCases),
                         byName<ExtensionCase>);

struct UnderCase {
  const char* name;
  PathStyle style;
  const wchar_t* base;
  const wchar_t* file;
  const wchar_t* joined;
};

class PathUnder : public testing::TestWithParam<UnderCase> {};

TEST_P(PathUnder, PutsOneSeparatorBetween) {
  const UnderCase& c = GetParam();
  EXPECT_EQ(pathUnder(c.base, c.style, c.file), c.joined);
}

const UnderCase kUnderCases[] = {
    {"Windows", kW, L"D:\\arch", L"a.dll", L"D:\\arch\\a.dll"},
    {"WindowsWithSeparator", kW, L"D:\\arch\\", L"a.dll", L"D:\\arch\\a.dll"},
    {"WindowsWithSlash", kW, L"D:/arch/", L"a.dll", L"D:/arch/a.dll"},
    {"WindowsDriveAlone", kW, L"D:", L"a.dll", L"D:\\a.dll"},
    {"WindowsRootedTakesTheDrive", kW, L"D:\\arch", L"\\a.dll", L"D:\\a.dll"},
    {"WindowsRootedTakesTheShare", kW, L"\\\\s\\t\\u", L"\\a.dll", L"\\\\s\\t\\a.dll"},
    {"WindowsRootedSlash", kW, L"D:\\arch", L"/a.dll", L"D:/a.dll"},
    {"Posix", kP, L"/arch", L"a.dll", L"/arch/a.dll"},
    {"PosixRoot", kP, L"/", L"a.dll", L"/a.dll"},
    {"PosixBackslashIsNoSeparator", kP, L"/arch\\", L"\\a", L"/arch\\/\\a"},
    {"EmptyBase", kP, L"", L"a.dll", L"a.dll"},
    {"EmptyName", kW, L"D:\\arch", L"", L"D:\\arch"},
};

INSTANTIATE_TEST_SUITE_P(Texts, PathUnder, testing::ValuesIn(kUnderCases), byName<UnderCase>);

}  // namespace
}  // namespace PAKU_3_1::internal
