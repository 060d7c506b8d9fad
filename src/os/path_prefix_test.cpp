// Tests of path_prefix.h: texts only.

#include "os/path_prefix.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace QV_2_9::internal {
namespace {

struct CommonEndRow {
  const char* name;
  const wchar_t* recorded;
  const wchar_t* found;
  const wchar_t* recordedPrefix;  // Null: nothing in common that a mapping can be made of.
  const wchar_t* localPrefix;
};

void PrintTo(const CommonEndRow& row, std::ostream* out) {
  *out << row.name;
}

constexpr CommonEndRow kCommonEnds[] = {
    {"TwoNames", L"/ci/work/src/a.cpp", L"/home/u/src/a.cpp", L"/ci/work", L"/home/u"},
    {"WholeNamesOnly", L"/ci/xsrc/a.cpp", L"/home/src/a.cpp", L"/ci/xsrc", L"/home/src"},
    {"NameAlone", L"/ci/a.cpp", L"/home/a.cpp", L"/ci", L"/home"},
    {"NoName", L"/ci/a.cpp", L"/home/b.cpp", nullptr, nullptr},
    {"EndOfAName", L"/ci/xa.cpp", L"/home/a.cpp", nullptr, nullptr},
    {"SamePath", L"/ci/a.cpp", L"/ci/a.cpp", nullptr, nullptr},
    {"LetterCaseOfPosix", L"/ci/SRC/a.cpp", L"/home/src/a.cpp", L"/ci/SRC", L"/home/src"},
    {"RootOfTheRecorded", L"/src/a.cpp", L"/home/src/a.cpp", L"/", L"/home"},
    {"RootOfTheLocal", L"/ci/src/a.cpp", L"/src/a.cpp", L"/ci", L"/"},
    {"Relative", L"src/a.cpp", L"/home/u/src/a.cpp", L"", L"/home/u"},
    {"RelativeUpwards", L"../src/a.cpp", L"/home/u/src/a.cpp", L"..", L"/home/u"},
    {"DotsAndDoubledSeparators", L"/ci//x/../src/./a.cpp", L"/h/src/a.cpp", L"/ci", L"/h"},
    {"Drive", L"C:\\ci\\src\\a.cpp", L"/home/u/src/a.cpp", L"C:\\ci", L"/home/u"},
    {"DriveRoot", L"C:\\src\\a.cpp", L"/home/u/src/a.cpp", L"C:\\", L"/home/u"},
    {"DriveWithSlashes", L"C:/ci/src/a.cpp", L"/home/u/src/a.cpp", L"C:\\ci", L"/home/u"},
    {"LetterCaseOfWindows", L"C:\\ci\\SRC\\a.cpp", L"D:\\u\\src\\a.cpp", L"C:\\ci", L"D:\\u"},
    {"DirectoryCaseHere", L"C:\\ci\\SRC\\a.cpp", L"/u/src/a.cpp", L"C:\\ci\\SRC", L"/u/src"},
    {"DeeperCaseHere", L"C:\\CI\\src\\a.cpp", L"/u/ci/src/a.cpp", L"C:\\CI", L"/u/ci"},
    {"FileNameCaseHere", L"C:\\ci\\src\\A.CPP", L"/u/src/a.cpp", L"C:\\ci", L"/u"},
    {"Share", L"\\\\srv\\ci\\x\\src\\a.cpp", L"/h/src/a.cpp", L"\\\\srv\\ci\\x", L"/h"},
    {"ShareRoot", L"\\\\srv\\ci\\src\\a.cpp", L"/h/src/a.cpp", L"\\\\srv\\ci", L"/h"},
    {"NoDrive", L"\\ci\\src\\a.cpp", L"/h/src/a.cpp", L"\\ci", L"/h"},
    {"Empty", L"", L"/h/src/a.cpp", nullptr, nullptr},
};

class CommonEnd : public testing::TestWithParam<CommonEndRow> {};

TEST_P(CommonEnd, GivesThePrefixes) {
  const CommonEndRow& row = GetParam();
  // The local path is read as one of POSIX on every system here.
  const auto prefixes =
      prefixesOfCommonEnd(splitRecordedPath(row.recorded), splitRecordedPath(row.found));
  ASSERT_EQ(prefixes.has_value(), row.recordedPrefix != nullptr);
  if (!prefixes)
    return;
  EXPECT_EQ(toText(prefixes->recorded), row.recordedPrefix);
  EXPECT_EQ(toText(prefixes->local), row.localPrefix);
}

INSTANTIATE_TEST_SUITE_P(Rows, CommonEnd, testing::ValuesIn(kCommonEnds), [](const auto& row) {
  return std::string(row.param.name);
});

struct MappedRow {
  const char* name;
  const wchar_t* from;
  const wchar_t* to;
  const wchar_t* recorded;
  const wchar_t* place;  // Empty: not below the prefix.
};

void PrintTo(const MappedRow& row, std::ostream* out) {
  *out << row.name;
}

constexpr MappedRow kMapped[] = {
    {"Below", L"/ci/work", L"/h", L"/ci/work/src/a.cpp", L"/h/src/a.cpp"},
    {"SeparatorAtTheEnd", L"/ci/work/", L"/h/", L"/ci/work/a.cpp", L"/h/a.cpp"},
    {"WholeNamesOnly", L"/ci/wor", L"/h", L"/ci/work/a.cpp", L""},
    {"ThePrefixItself", L"/ci/work", L"/h", L"/ci/work", L""},
    {"Elsewhere", L"/ci/work", L"/h", L"/other/a.cpp", L""},
    {"LetterCaseOfPosix", L"/ci/work", L"/h", L"/CI/work/a.cpp", L""},
    {"OutAgainByDots", L"/ci/work", L"/h", L"/ci/work/../../etc/passwd", L""},
    {"DotsThatStayBelow", L"/ci/work", L"/h", L"/ci/work/x/../a.cpp", L"/h/a.cpp"},
    {"RootToDirectory", L"/", L"/sysroot", L"/usr/a.h", L"/sysroot/usr/a.h"},
    {"RootsWithoutDrive", L"/", L"/h", L"\\ci\\a.cpp", L"/h/ci/a.cpp"},
    {"RootIsNoDrive", L"/", L"/sysroot", L"C:\\usr\\a.h", L""},
    {"RootIsNotRelative", L"/", L"/sysroot", L"usr/a.h", L""},
    {"Relative", L"", L"/h", L"src/a.cpp", L"/h/src/a.cpp"},
    {"RelativeIsNotAbsolute", L"", L"/h", L"/src/a.cpp", L""},
    {"Drive", L"C:\\ci", L"/h", L"c:\\CI\\src\\a.cpp", L"/h/src/a.cpp"},
    {"DriveAlone", L"C:", L"/h", L"C:\\src\\a.cpp", L"/h/src/a.cpp"},
    {"OtherDrive", L"C:\\ci", L"/h", L"D:\\ci\\a.cpp", L""},
    {"Slashes", L"C:/ci", L"/h", L"C:\\ci\\a.cpp", L"/h/a.cpp"},
    {"Share", L"\\\\srv\\ci", L"/h", L"\\\\SRV\\ci\\src\\a.cpp", L"/h/src/a.cpp"},
    {"OtherShare", L"\\\\srv\\ci", L"/h", L"\\\\srv\\cj\\a.cpp", L""},
    {"ToDrive", L"/ci", L"D:\\h", L"/ci/src/a.cpp", L"D:\\h\\src\\a.cpp"},
    {"ToDriveRoot", L"/ci", L"D:\\", L"/ci/a.cpp", L"D:\\a.cpp"},
    {"ToShare", L"C:\\ci", L"\\\\srv\\h", L"C:\\ci\\a.cpp", L"\\\\srv\\h\\a.cpp"},
};

class Mapped : public testing::TestWithParam<MappedRow> {};

TEST_P(Mapped, GivesThePlace) {
  const MappedRow& row = GetParam();
  const MappedPrefixes prefixes{splitRecordedPath(row.from), splitRecordedPath(row.to)};
  EXPECT_EQ(mappedPath(prefixes, splitRecordedPath(row.recorded)), row.place);
}

INSTANTIATE_TEST_SUITE_P(Rows, Mapped, testing::ValuesIn(kMapped), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(PathPrefix, ReadsNullAsEmpty) {
  EXPECT_EQ(toText(splitRecordedPath(nullptr)), L"");
  EXPECT_EQ(toText(splitLocalPath(nullptr)), L"");
}

}  // namespace
}  // namespace QV_2_9::internal
