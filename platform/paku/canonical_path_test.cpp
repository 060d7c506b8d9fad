// The canonical spelling, in both styles on every system.

#include "paku/canonical_path.h"

#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "paku/named_rows_test_support.h"
#include "paku/path_syntax.h"

namespace PAKU_3_1::internal {
namespace {

constexpr auto kP = PathStyle::kPosix;
constexpr auto kW = PathStyle::kWindows;

struct CanonicalCase {
  const char* name;
  PathStyle style;
  const wchar_t* text;
  const wchar_t* canonical;
};

class CanonicalPath : public testing::TestWithParam<CanonicalCase> {};

TEST_P(CanonicalPath, IsTheOneSpelling) {
  EXPECT_EQ(canonicalPath(GetParam().text, GetParam().style), GetParam().canonical);
}

const CanonicalCase kCases[] = {
    {"WindowsPlain", kW, L"C:\\Dir", L"C:\\Dir"},
    {"WindowsTrailingSeparator", kW, L"c:\\dir\\", L"c:\\dir"},
    {"WindowsSlashes", kW, L"D:/src/a.cpp", L"D:\\src\\a.cpp"},
    {"WindowsDoubled", kW, L"D:\\\\src\\\\a", L"D:\\src\\a"},
    {"WindowsDots", kW, L"C:\\a\\.\\b\\..\\c", L"C:\\a\\c"},
    {"WindowsAboveTheRoot", kW, L"C:\\..\\..\\a", L"C:\\a"},
    {"WindowsRoot", kW, L"C:\\", L"C:\\"},
    {"WindowsDriveAlone", kW, L"C:", L"C:\\"},
    {"WindowsToTheRoot", kW, L"C:\\a\\..", L"C:\\"},
    {"WindowsRooted", kW, L"\\a\\..\\..\\b\\", L"\\b"},
    {"WindowsRootedNothing", kW, L"\\a\\..", L"\\"},
    {"WindowsShare", kW, L"//srv/share/x/", L"\\\\srv\\share\\x"},
    {"WindowsShareRoot", kW, L"\\\\srv\\share", L"\\\\srv\\share\\"},
    {"WindowsShareAbove", kW, L"\\\\srv\\share\\..\\x", L"\\\\srv\\share\\x"},
    {"WindowsShareDoubled", kW, L"\\\\srv\\\\share\\x", L"\\\\srv\\share\\x"},
    {"WindowsLongDrive", kW, L"\\\\?\\C:\\a\\..\\b", L"\\\\?\\C:\\b"},
    {"WindowsLongShare", kW, L"\\\\?\\UNC\\s\\t\\..\\x", L"\\\\?\\UNC\\s\\t\\x"},
    {"WindowsRelative", kW, L"a\\..\\..\\b", L"..\\b"},
    {"WindowsRelativeUp", kW, L"..\\..\\b", L"..\\..\\b"},
    {"WindowsRelativeNothing", kW, L"a\\..", L"."},
    {"WindowsRelativeNotADrive", kW, L"a\\..\\C:\\b", L".\\C:\\b"},
    {"WindowsCaseStays", kW, L"C:\\PROGRA~1\\AbC", L"C:\\PROGRA~1\\AbC"},
    {"WindowsServerElement",
     kW,
     L"Z:\\cwd\\srv*D:\\cache*https://host/x",
     L"Z:\\cwd\\srv*D:\\cache*https:\\host\\x"},
    {"PosixPlain", kP, L"/usr/bin", L"/usr/bin"},
    {"PosixTrailingSeparator", kP, L"/usr/bin/", L"/usr/bin"},
    {"PosixDoubled", kP, L"//usr///bin", L"/usr/bin"},
    {"PosixDots", kP, L"/a/./b/../c/.", L"/a/c"},
    {"PosixAboveTheRoot", kP, L"/../a", L"/a"},
    {"PosixRoot", kP, L"/", L"/"},
    {"PosixToTheRoot", kP, L"/a/..", L"/"},
    {"PosixRelative", kP, L"a/../../b", L"../b"},
    {"PosixRelativeNothing", kP, L"./", L"."},
    {"PosixBackslashStays", kP, L"/x/we\\..\\ird", L"/x/we\\..\\ird"},
    {"PosixRelativeBackslash", kP, L"./a\\.\\b", L"./a\\.\\b"},
    {"PosixThreeDots", kP, L"/a/.../b", L"/a/.../b"},
    {"Empty", kP, L"", L""},
    {"WindowsEmpty", kW, L"", L""},
};

INSTANTIATE_TEST_SUITE_P(Texts, CanonicalPath, testing::ValuesIn(kCases), byName<CanonicalCase>);

/// Texts made of the pieces that paths are made of, the awkward ones more often than in life.
std::vector<std::wstring> generatedPaths(PathStyle style, std::size_t count) {
  const wchar_t* const kPieces[] = {L"/",
                                    L"\\",
                                    L"/",
                                    L"\\",
                                    L".",
                                    L"..",
                                    L"a",
                                    L"B",
                                    L"C:",
                                    L"?",
                                    L"a.dll",
                                    L"UNC",
                                    L"\\\\",
                                    L"...",
                                    L".x.y",
                                    L"*"};
  std::mt19937 random(style == kW ? 1 : 2);
  std::vector<std::wstring> paths;
  for (std::size_t i = 0; i < count; ++i) {
    std::wstring path;
    for (auto pieces = random() % 9; pieces > 0; --pieces)
      path += kPieces[random() % std::size(kPieces)];
    paths.push_back(path);
  }
  return paths;
}

class GeneratedPaths : public testing::TestWithParam<PathStyle> {};

TEST_P(GeneratedPaths, CanonicalIsIdempotent) {
  for (const std::wstring& path : generatedPaths(GetParam(), 20000)) {
    const std::wstring once = canonicalPath(path, GetParam());
    ASSERT_EQ(canonicalPath(once, GetParam()), once) << testing::PrintToString(path);
  }
}

TEST_P(GeneratedPaths, CanonicalStaysAbsoluteOrRelative) {
  for (const std::wstring& path : generatedPaths(GetParam(), 20000))
    ASSERT_EQ(isAbsolutePath(canonicalPath(path, GetParam()), GetParam()),
              isAbsolutePath(path, GetParam()))
        << testing::PrintToString(path);
}

TEST_P(GeneratedPaths, DirectoryAndFileNameMakeTheText) {
  for (const std::wstring& path : generatedPaths(GetParam(), 20000)) {
    const std::wstring directory = directoryText(path, GetParam(), false);
    const std::wstring joined = directory + path.substr(fileNameStart(path, GetParam(), false));
    ASSERT_TRUE(joined == path || joined == path + separatorOf(GetParam()))
        << testing::PrintToString(path);
  }
}

TEST_P(GeneratedPaths, FileNamesHaveNoSeparatorAndAreNoDots) {
  for (const std::wstring& path : generatedPaths(GetParam(), 20000)) {
    const std::wstring name = path.substr(fileNameStart(path, GetParam(), false));
    ASSERT_TRUE(name != L"." && name != L".." && name.find(L'/') == std::wstring::npos)
        << testing::PrintToString(path);
    ASSERT_TRUE(GetParam() == kP || name.find(L'\\') == std::wstring::npos)
        << testing::PrintToString(path);
  }
}

INSTANTIATE_TEST_SUITE_P(Styles, GeneratedPaths, testing::Values(kP, kW), byStyle);

LinkReader links(std::map<std::wstring, std::wstring> targets) {
  return [targets = std::move(targets)](const std::wstring& path) -> std::optional<std::wstring> {
    const auto found = targets.find(path);
    return found == targets.end() ? std::nullopt : std::optional(found->second);
  };
}

TEST(CanonicalPathLinks, StayWhereNothingGoesUp) {
  EXPECT_EQ(canonicalPath(L"/a/link/x", kP, links({{L"/a/link", L"/b"}})), L"/a/link/x");
}

TEST(CanonicalPathLinks, AreFollowedBeforeGoingUp) {
  EXPECT_EQ(canonicalPath(L"/a/link/../x", kP, links({{L"/a/link", L"/b/c"}})), L"/b/x");
  EXPECT_EQ(canonicalPath(L"/a/link/../x", kP, links({{L"/a/link", L"c/d"}})), L"/a/c/x");
  EXPECT_EQ(canonicalPath(L"/a/link/../x", kP, links({{L"/a/link", L"../d/e/"}})), L"/d/x");
}

TEST(CanonicalPathLinks, AreFollowedThroughOtherLinks) {
  EXPECT_EQ(canonicalPath(L"/a/../x", kP, links({{L"/a", L"b"}, {L"/b", L"c/d"}})), L"/c/x");
}

TEST(CanonicalPathLinks, OfRelativePathsStayRelative) {
  EXPECT_EQ(canonicalPath(L"link/../x", kP, links({{L"link", L"b/c"}})), L"b/x");
}

TEST(CanonicalPathLinks, ThatLoopEnd) {
  EXPECT_EQ(canonicalPath(L"/a/../x", kP, links({{L"/a", L"b"}, {L"/b", L"a"}})), L"/x");
}

}  // namespace
}  // namespace PAKU_3_1::internal
