#include "search_directory.h"

#include <ostream>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "usage_error.h"

namespace quiver_tool {
namespace {

using QV_2_9::scAllFiles;
using QV_2_9::scBinaryFiles;
using QV_2_9::scSourceFiles;
using QV_2_9::scSymbolFiles;
using QV_2_9::search_category_t;
using testing::HasSubstr;

bool nothingExists(const std::wstring&) {
  return false;
}

struct DirectoryRow {
  const char* name;
  const wchar_t* argument;
  search_category_t category;
  const wchar_t* path;
  bool isRecursive;
  bool isHighPriority;
};

void PrintTo(const DirectoryRow& row, std::ostream* out) {
  *out << row.name;
}

class ParsedDirectory : public testing::TestWithParam<DirectoryRow> {};

TEST_P(ParsedDirectory, IsReadAs) {
  const DirectoryRow& row = GetParam();
  const SearchDirectory dir = parseSearchDirectory(row.argument, scSourceFiles, nothingExists);
  EXPECT_EQ(dir.category, row.category);
  EXPECT_EQ(dir.path, row.path);
  EXPECT_EQ(dir.isRecursive, row.isRecursive);
  EXPECT_EQ(dir.isHighPriority, row.isHighPriority);
}

INSTANTIATE_TEST_SUITE_P(
    SearchDirectory,
    ParsedDirectory,
    testing::Values(
        DirectoryRow{"Plain", L"/s", scSourceFiles, L"/s", false, false},
        DirectoryRow{"Binaries", L"bin:/s", scBinaryFiles, L"/s", false, false},
        DirectoryRow{"Symbols", L"sym:/s,high", scSymbolFiles, L"/s", false, true},
        DirectoryRow{"Sources", L"src:/s,recursive", scSourceFiles, L"/s", true, false},
        DirectoryRow{"EveryKind", L"all:/s,recursive,high", scAllFiles, L"/s", true, true},
        DirectoryRow{"EitherOrder", L"/s,high,recursive", scSourceFiles, L"/s", true, true},
        DirectoryRow{"SameFlagTwice", L"/s,high,high", scSourceFiles, L"/s", false, true},
        DirectoryRow{"OneKindOnly", L"src:bin:/s", scSourceFiles, L"bin:/s", false, false},
        DirectoryRow{"KindInsideAPath", L"./sym:x", scSourceFiles, L"./sym:x", false, false},
        DirectoryRow{"Drive", L"C:\\s,high", scSourceFiles, L"C:\\s", false, true},
        DirectoryRow{"CommaInPath", L"/a,b", scSourceFiles, L"/a,b", false, false},
        DirectoryRow{"CommaInPathAndFlag", L"/a,b,high", scSourceFiles, L"/a,b", false, true},
        DirectoryRow{"FlagInsideAPath", L"/a,high/b", scSourceFiles, L"/a,high/b", false, false},
        DirectoryRow{
            "LookalikeInsideAPath", L"/a,recurse/b", scSourceFiles, L"/a,recurse/b", false, false},
        DirectoryRow{"PathEndsInFlag", L"/a,high,", scSourceFiles, L"/a,high", false, false},
        DirectoryRow{"PathEndsInFlagWithFlag",
                     L"/a,high,,recursive",
                     scSourceFiles,
                     L"/a,high",
                     true,
                     false},
        DirectoryRow{
            "PathEndsInLookalike", L"/a,recurse,", scSourceFiles, L"/a,recurse", false, false},
        DirectoryRow{"PathEndsInComma", L"/a,,", scSourceFiles, L"/a,", false, false},
        DirectoryRow{"Server",
                     L"sym:srv*/cache*https://host/x,high",
                     scSymbolFiles,
                     L"srv*/cache*https://host/x",
                     false,
                     true}),
    [](const auto& test) { return test.param.name; });

std::string complaint(const std::wstring& argument, const IsDirectory& isDirectory) {
  try {
    parseSearchDirectory(argument, scSourceFiles, isDirectory);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "none";
}

struct MistypedRow {
  const char* name;
  const wchar_t* word;
};

void PrintTo(const MistypedRow& row, std::ostream* out) {
  *out << row.name;
}

class MistypedFlag : public testing::TestWithParam<MistypedRow> {};

TEST_P(MistypedFlag, IsRefusedThoughNothingExists) {
  EXPECT_THAT(complaint(std::wstring(L"/s,") + GetParam().word, nothingExists),
              HasSubstr("unknown flag"));
}

INSTANTIATE_TEST_SUITE_P(SearchDirectory,
                         MistypedFlag,
                         testing::Values(MistypedRow{"Verb", L"recurse"},
                                         MistypedRow{"Noun", L"recursion"},
                                         MistypedRow{"Adverb", L"recursively"},
                                         MistypedRow{"Capital", L"Recursive"},
                                         MistypedRow{"LetterMissing", L"recursiv"},
                                         MistypedRow{"LettersSwapped", L"recusrive"},
                                         MistypedRow{"Short", L"rec"},
                                         MistypedRow{"Capitals", L"HIGH"},
                                         MistypedRow{"HighMisspelt", L"hihgh"},
                                         MistypedRow{"HighShort", L"hig"},
                                         MistypedRow{"Priority", L"highpriority"},
                                         MistypedRow{"PriorityWithHyphen", L"high-priority"}),
                         [](const auto& test) { return test.param.name; });

TEST(SearchDirectory, NamesTheUnknownFlagAndTheWayOut) {
  EXPECT_EQ(complaint(L"/s,recurse", nothingExists),
            "--dir: unknown flag 'recurse'; the flags are 'recursive' and 'high' (if it belongs to "
            "the path, write '/s,recurse,')");
}

TEST(SearchDirectory, RefusesAnyWordAfterADirectoryThatExists) {
  const std::set<std::wstring> existing{L"/s"};
  const auto exists = [&](const std::wstring& path) { return existing.contains(path); };
  EXPECT_THAT(complaint(L"/s,deep", exists), HasSubstr("unknown flag 'deep'"));
  EXPECT_THAT(complaint(L"/s,deep,high", exists), HasSubstr("unknown flag 'deep'"));
  EXPECT_EQ(complaint(L"/other,deep", exists), "none");
  EXPECT_EQ(complaint(L"/s,deep,", exists), "none");
}

TEST(SearchDirectory, TakesADirectoryThatExistsAsItIs) {
  const std::set<std::wstring> existing{L"/s", L"/s,recurse"};
  const auto exists = [&](const std::wstring& path) { return existing.contains(path); };
  EXPECT_EQ(parseSearchDirectory(L"/s,recurse,high", scSourceFiles, exists).path, L"/s,recurse");
}

TEST(SearchDirectory, RefusesAnEmptyPath) {
  EXPECT_EQ(complaint(L"", nothingExists), "--dir: '' names no directory");
  EXPECT_EQ(complaint(L"bin:", nothingExists), "--dir: 'bin:' names no directory");
  EXPECT_EQ(complaint(L",recursive", nothingExists), "--dir: ',recursive' names no directory");
  EXPECT_EQ(complaint(L",", nothingExists), "--dir: ',' names no directory");
}

}  // namespace
}  // namespace quiver_tool
