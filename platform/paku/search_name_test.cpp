// What a name is looked for as, on systems of either kind.

#include "paku/search_name.h"

#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "paku/named_rows_test_support.h"

namespace PAKU_3_1::internal {
namespace {

constexpr auto kP = PathStyle::kPosix;
constexpr auto kW = PathStyle::kWindows;

/// The tails as texts, with '|' between components so that no separator is mistaken for one.
std::vector<std::wstring> tailTexts(const std::wstring& name, PathStyle systemStyle) {
  const SearchName sought(name, systemStyle);
  std::vector<std::wstring> texts;
  for (const Tail tail : sought.tails()) {
    std::wstring text;
    for (const std::wstring& component : tail) text += (text.empty() ? L"" : L"|") + component;
    texts.push_back(text);
  }
  return texts;
}

struct TailCase {
  const char* name;
  PathStyle system;
  const wchar_t* sought;
  std::vector<std::wstring> tails;
};

class SearchNameTails : public testing::TestWithParam<TailCase> {};

TEST_P(SearchNameTails, AreLongestFirst) {
  EXPECT_THAT(tailTexts(GetParam().sought, GetParam().system),
              testing::ElementsAreArray(GetParam().tails));
}

const TailCase kCases[] = {
    {"PosixBareName", kP, L"a.dll", {L"a.dll"}},
    {"PosixRecordedDrive",
     kP,
     L"C:\\work\\proj\\x.cpp",
     {L"work|proj|x.cpp", L"proj|x.cpp", L"x.cpp"}},
    {"PosixRecordedDriveWithSlashes", kP, L"C:/proj/x.cpp", {L"proj|x.cpp", L"x.cpp"}},
    {"PosixRecordedShare", kP, L"\\\\srv\\share\\x.cpp", {L"x.cpp"}},
    {"PosixRecordedLongPath", kP, L"\\\\?\\C:\\p\\x.cpp", {L"p|x.cpp", L"x.cpp"}},
    {"PosixAbsolute", kP, L"/build/src/a.cpp", {L"build|src|a.cpp", L"src|a.cpp", L"a.cpp"}},
    {"PosixRelative", kP, L"src/a.cpp", {L"src|a.cpp", L"a.cpp"}},
    {"PosixBackslashFirstAsWritten", kP, L"src\\a.cpp", {L"src\\a.cpp", L"src|a.cpp", L"a.cpp"}},
    {"PosixBackslashWithSlash",
     kP,
     L"sub/we\\ird.c",
     {L"sub|we\\ird.c", L"we\\ird.c", L"sub|we|ird.c", L"we|ird.c", L"ird.c"}},
    {"PosixBackslashInDirectory",
     kP,
     L"we\\ird/x.c",
     {L"we\\ird|x.c", L"we|ird|x.c", L"ird|x.c", L"x.c"}},
    {"PosixAbsoluteWithBackslash", kP, L"/x/we\\ird.c", {L"x|we\\ird.c", L"we\\ird.c"}},
    {"PosixRooted", kP, L"\\a\\f.dll", {L"\\a\\f.dll", L"a|f.dll", L"f.dll"}},
    {"PosixDots", kP, L"/a/./b/../c.x", {L"a|c.x", L"c.x"}},
    {"PosixLeadingParents", kP, L"../../a.dll", {L"a.dll"}},
    {"PosixMoreParentsThanDirectories", kP, L"a/../../b.dll", {L"b.dll"}},
    {"PosixDoubledSeparators", kP, L"a//b", {L"a|b", L"b"}},
    {"PosixPatternIsAName", kP, L"*/?.dll", {L"*|?.dll", L"?.dll"}},
    {"PosixDriveAloneIsAName", kP, L"C:", {L"C:"}},
    {"PosixTrailingBackslash", kP, L"dir\\", {L"dir\\"}},
    {"PosixDirectory", kP, L"dir/", {}},
    {"PosixParent", kP, L"dir/..", {}},
    {"PosixRoot", kP, L"/", {}},
    {"PosixRecordedRoot", kP, L"C:\\", {}},
    {"PosixEmpty", kP, L"", {}},
    {"WindowsDrive", kW, L"C:\\work\\proj\\x.cpp", {L"work|proj|x.cpp", L"proj|x.cpp", L"x.cpp"}},
    {"WindowsRooted", kW, L"/build/src/a.cpp", {L"build|src|a.cpp", L"src|a.cpp", L"a.cpp"}},
    {"WindowsRelative", kW, L"src\\a.cpp", {L"src|a.cpp", L"a.cpp"}},
    {"WindowsMixed", kW, L"sub/we\\ird.c", {L"sub|we|ird.c", L"we|ird.c", L"ird.c"}},
    {"WindowsLeadingParents", kW, L"..\\a.dll", {L"a.dll"}},
    {"WindowsShare", kW, L"\\\\srv\\share\\p\\x.cpp", {L"p|x.cpp", L"x.cpp"}},
    {"WindowsDirectory", kW, L"dir\\", {}},
    {"WindowsEmpty", kW, L"", {}},
};

INSTANTIATE_TEST_SUITE_P(Names, SearchNameTails, testing::ValuesIn(kCases), byName<TailCase>);

class SearchNameEscape : public testing::TestWithParam<PathStyle> {};

TEST_P(SearchNameEscape, IsImpossible) {
  const wchar_t* const kPieces[] = {L"/", L"\\", L"..", L".", L"a", L"C:", L"/..", L"\\..", L"//"};
  std::mt19937 random(11);
  for (int i = 0; i < 20000; ++i) {
    std::wstring name;
    for (auto pieces = random() % 10; pieces > 0; --pieces)
      name += kPieces[random() % std::size(kPieces)];
    const SearchName sought(name, GetParam());
    for (const Tail tail : sought.tails()) {
      ASSERT_FALSE(tail.empty());
      for (const std::wstring& component : tail) {
        ASSERT_TRUE(!component.empty() && component != L"." && component != L"..") << name;
        ASSERT_EQ(component.find(L'/'), std::wstring::npos) << name;
        ASSERT_TRUE(GetParam() == kP || component.find(L'\\') == std::wstring::npos) << name;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Systems, SearchNameEscape, testing::Values(kP, kW), byStyle);

}  // namespace
}  // namespace PAKU_3_1::internal
