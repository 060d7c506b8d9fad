// Wrong command lines and the texts that teach, as the built program prints them.

#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "run_program.h"

namespace quiver_tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr const char* kSomeMd5 = "9e107d9d372bb6826bd81d3542a419d6";

struct UsageRow {
  const char* name;
  std::vector<std::string> arguments;
  const char* complaint;
};

void PrintTo(const UsageRow& row, std::ostream* out) {
  *out << row.name;
}

class Usage : public testing::TestWithParam<UsageRow> {};

TEST_P(Usage, IsRefusedWithAReason) {
  const RunResult run = runProgram(GetParam().arguments);
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr(GetParam().complaint));
}

INSTANTIATE_TEST_SUITE_P(
    Program,
    Usage,
    testing::Values(
        UsageRow{"NoArguments", {}, "Examples:\n  quiver find bin"},
        UsageRow{"NoKind", {"find"}, "The steps, in this order"},
        UsageRow{"NoName", {"find", "sym"}, "NAME is required\nTry 'quiver find sym --help'.\n"},
        UsageRow{"EmptyName", {"find", "sym", ""}, "NAME must not be empty"},
        UsageRow{"TwoNames", {"find", "sym", "a", "b"}, "not expected: b"},
        UsageRow{"UnknownCommand",
                 {"look"},
                 "'look' is not a command; the commands are 'find', 'explain', 'archive', "
                 "'identify', "
                 "'record' and 'resolve'"},
        UsageRow{"UnknownKind", {"find", "lib", "a"}, "'lib' is no kind of file"},
        UsageRow{"UnknownOption", {"find", "src", "a", "--deep"}, "not expected: --deep"},
        UsageRow{"UnknownFlag", {"find", "src", "a", "-d", "/x,recurse"}, "unknown flag 'recurse'"},
        UsageRow{"NoDirectory", {"find", "src", "a", "-d"}, "--dir"},
        UsageRow{"EmptyDirectory", {"find", "src", "a", "-d", ""}, "names no directory"},
        UsageRow{
            "EmptyArchive", {"find", "src", "a", "--archive", ""}, "--archive must not be empty"},
        UsageRow{"EmptyBinary", {"find", "src", "a", "--binary", ""}, "--binary must not be empty"},
        UsageRow{"EmptySuggestion",
                 {"find", "src", "a", "--suggest", ""},
                 "--suggest must not be empty"},
        UsageRow{
            "BinaryOfABinary", {"find", "bin", "a", "--binary", "b"}, "not expected: --binary b\n"},
        UsageRow{"ShortMd5", {"find", "src", "a", "--md5", "12"}, "this text has 2 characters"},
        UsageRow{"BadMd5",
                 {"find", "src", "a", "--md5", "9e107d9d372bb6826bd81d3542a419dx"},
                 "'x' at position 32"},
        UsageRow{"EmptyResult", {"find", "src", "a", "--result", ""}, "--result must not be empty"},
        UsageRow{"EmptyParent", {"find", "src", "a", "--parent", ""}, "--parent must not be empty"},
        UsageRow{"ResultTwice",
                 {"find", "src", "a", "--result", "b", "--result", "c"},
                 "quiver: --result may be given once\n"},
        UsageRow{"SuggestionTwice",
                 {"find", "src", "a", "--suggest", "b", "--suggest", "c"},
                 "quiver: --suggest may be given once\n"},
        UsageRow{"BinaryTwice",
                 {"find", "src", "a", "--binary", "b", "--binary", "c"},
                 "quiver: --binary may be given once\n"},
        UsageRow{"CategoryTwice",
                 {"archive", "/", "a", "--category", "src", "--category", "src"},
                 "quiver: --category may be given once\n"},
        UsageRow{"OptionsBehindTheName",
                 {"find", "src", "--", "-x", "-d", "src"},
                 "quiver: not expected: -d src\n"},
        UsageRow{"TimeOfADirectory",
                 {"find", "src", "a", "--mtime", "/"},
                 "--mtime: '/' is neither a number of seconds since 1970 nor a file"},
        UsageRow{"AgeOfADirectory",
                 {"find", "src", "a", "--not-newer-than", "/"},
                 "--not-newer-than: no such file: /\n"},
        UsageRow{"NowhereToArchive",
                 {"find", "src", "a", "--archive-found"},
                 "--archive-found needs a result directory: --result or --parent"},
        UsageRow{"NeitherTimeNorFile",
                 {"find", "src", "a", "--mtime", "1e9"},
                 "--mtime: '1e9' is neither a number of seconds since 1970 nor a file"},
        UsageRow{"TimeZero",
                 {"find", "src", "a", "--mtime", "0"},
                 "--mtime: time 0 counts as not recorded"},
        UsageRow{"EmptyTime", {"find", "src", "a", "--mtime", ""}, "--mtime must not be empty"},
        UsageRow{"SizeWithAUnit",
                 {"find", "src", "a", "--size", "5k"},
                 "--size: '5k' is no number of bytes"},
        UsageRow{"SizeTooSmall",
                 {"find", "src", "a", "--size=-2147483649"},
                 "--size: '-2147483649' is no number of bytes"},
        UsageRow{"SizeZero", {"find", "src", "a", "--size", "0"}, "0 cannot be checked"},
        UsageRow{"SizeWithoutLowBits",
                 {"find", "src", "a", "--size", "4294967296"},
                 "4294967296 cannot be checked"},
        UsageRow{"NoReference",
                 {"find", "src", "a", "--not-newer-than", "/qv/none"},
                 "--not-newer-than: no such file: /qv/none"},
        UsageRow{"TimeOfABinary", {"find", "bin", "a", "--mtime", "5"}, "not expected"},
        UsageRow{"Md5AndTime",
                 {"find", "src", "a", "--md5", kSomeMd5, "--mtime", "5"},
                 "--md5, --mtime with --size, and --not-newer-than exclude each other"},
        UsageRow{"Md5AndSize",
                 {"find", "src", "a", "--md5", kSomeMd5, "--size", "5"},
                 "exclude each other"},
        UsageRow{"SizeAndAge",
                 {"find", "src", "a", "--size", "5", "--not-newer-than", "/"},
                 "exclude each other"},
        UsageRow{"Md5AndAge",
                 {"find", "src", "a", "--md5", kSomeMd5, "--not-newer-than", "/"},
                 "exclude each other"},
        UsageRow{
            "ArchiveOfNothing", {"archive"}, "DIR is required\nTry 'quiver archive --help'.\n"},
        UsageRow{"NothingToArchive",
                 {"archive", "/"},
                 "name a FILE to archive, or give --list or --verify"},
        UsageRow{"EmptyFile", {"archive", "/", "", "--category", "src"}, "FILE must not be empty"},
        UsageRow{"NoCategory", {"archive", "/", "a"}, "--category is needed: one of 'bin'"},
        UsageRow{"UnknownCategory",
                 {"archive", "/", "a", "--category", "lib"},
                 "--category: 'lib' is none of 'bin', 'sym', 'src', 'all'\n"},
        UsageRow{"ListOfFiles", {"archive", "--list", "/", "a"}, "take no FILE"},
        UsageRow{"ListOfACategory",
                 {"archive", "--list", "/", "--category", "src"},
                 "--category goes with FILE only"},
        UsageRow{"JsonOfFiles",
                 {"archive", "/", "a", "--category", "src", "--json"},
                 "--json goes with --list and --verify only"},
        UsageRow{"Md5Twice",
                 {"find", "src", "a", "--md5", kSomeMd5, "--md5", kSomeMd5},
                 "quiver: --md5 may be given once\n"}),
    [](const auto& test) { return test.param.name; });

struct HelpRow {
  const char* name;
  std::vector<std::string> arguments;
  const char* example;
};

void PrintTo(const HelpRow& row, std::ostream* out) {
  *out << row.name;
}

class Help : public testing::TestWithParam<HelpRow> {};

TEST_P(Help, TeachesByExample) {
  const RunResult run = runProgram(GetParam().arguments);
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, AllOf(HasSubstr("Examples:\n"), HasSubstr(GetParam().example)));
  EXPECT_EQ(run.err, "");
}

INSTANTIATE_TEST_SUITE_P(
    Program,
    Help,
    testing::Values(
        HelpRow{"OfTheProgram", {"--help"}, "quiver find bin 'C:\\build\\out\\app.exe'"},
        HelpRow{"OfFind", {"find", "--help"}, "quiver find bin libparse.so"},
        HelpRow{
            "OfBinaries", {"find", "bin", "--help"}, "quiver find bin 'C:\\build\\out\\app.exe'"},
        HelpRow{"OfSymbols", {"find", "sym", "--help"}, "quiver find sym app.debug --binary"},
        HelpRow{"OfArchive", {"archive", "--help"}, "quiver archive --list ~/results/r1"},
        HelpRow{"OfSources", {"find", "src", "-h"}, "--result ~/results/r1 --archive-found"}),
    [](const auto& test) { return test.param.name; });

TEST(Version, IsThatOfTheProject) {
  const RunResult run = runProgram({"--version"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "quiver " QUIVER_VERSION "\n");
}

}  // namespace
}  // namespace quiver_tool
