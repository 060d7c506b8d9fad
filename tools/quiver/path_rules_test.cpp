// Rules that suggest paths: what they say, what they learn, when they go.

#include "path_rules.h"

#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "text_encoding.h"

namespace quiver_tool {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Suggestions final : public QV_2_9::IStringContainer {
 public:
  void add(const wchar_t* text) override { m_texts.push_back(text); }
  const std::vector<std::wstring>& texts() const { return m_texts; }

 private:
  std::vector<std::wstring> m_texts;
};

std::vector<std::wstring> suggestionsOf(PathRules& rules, const wchar_t* file) {
  Suggestions suggestions;
  EXPECT_TRUE(rules.onSrcSearchStarted(file, L"", L"", suggestions));
  return suggestions.texts();
}

Outcome foundAt(const wchar_t* path, std::int32_t step, std::int32_t confidence) {
  Outcome outcome;
  outcome.found = FoundFile{path, step, confidence};
  return outcome;
}

Outcome refutedAt(const wchar_t* path) {
  Outcome outcome;
  outcome.rejected = {{path, 7, 1, L"%ChecksumMismatch"}};
  return outcome;
}

struct LearnedRow {
  const char* name;
  const wchar_t* recorded;
  const wchar_t* found;
  const wchar_t* from;
  const wchar_t* to;
};

void PrintTo(const LearnedRow& row, std::ostream* out) {
  *out << row.name;
}

class LearnedMapping : public testing::TestWithParam<LearnedRow> {};

TEST_P(LearnedMapping, IsWhatLiesInFrontOfTheCommonEnd) {
  const UsedMapping mapping = learnedMapping(GetParam().recorded, GetParam().found);
  EXPECT_EQ(toUtf8(mapping.from), toUtf8(GetParam().from));
  EXPECT_EQ(toUtf8(mapping.to), toUtf8(GetParam().to));
}

INSTANTIATE_TEST_SUITE_P(
    PathRules,
    LearnedMapping,
    testing::Values(
        LearnedRow{
            "Tree", L"/build/agent/src/a.c", L"/home/u/src/a.c", L"/build/agent", L"/home/u"},
        LearnedRow{"NameOnly", L"/ci/one/a.c", L"/home/two/a.c", L"/ci/one", L"/home/two"},
        LearnedRow{
            "WholeNamesOnly", L"/ci/xsrc/a.c", L"/home/ysrc/a.c", L"/ci/xsrc", L"/home/ysrc"},
        LearnedRow{"WindowsOnLinux", L"C:\\Ci\\Src\\A.c", L"/home/src/a.c", L"C:\\Ci", L"/home"},
        LearnedRow{"Drive", L"C:\\src\\a.c", L"/home/src/a.c", L"C:", L"/home"},
        LearnedRow{"CaseCounts", L"/ci/Src/a.c", L"/home/src/a.c", L"/ci/Src", L"/home/src"},
        LearnedRow{"OtherName", L"/ci/a.c", L"/home/b.c", L"", L""},
        LearnedRow{"SamePath", L"/ci/a.c", L"/ci/a.c", L"", L""},
        LearnedRow{"BareName", L"a.c", L"/home/a.c", L"", L""},
        LearnedRow{"WholeRecordedPath", L"/src/a.c", L"/home/src/a.c", L"", L""}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(PathRules, SuggestsBelowTheGivenPath) {
  PathRules rules;
  rules.add(L"/ci/work/", L"/home/u/");
  EXPECT_THAT(suggestionsOf(rules, L"/ci/work/src/a.c"), ElementsAre(L"/home/u/src/a.c"));
  EXPECT_THAT(suggestionsOf(rules, L"/ci/workshop/a.c"), IsEmpty());
  EXPECT_THAT(suggestionsOf(rules, L"/ci/work"), IsEmpty());
  EXPECT_THAT(suggestionsOf(rules, L"/CI/work/a.c"), IsEmpty());
  EXPECT_THAT(suggestionsOf(rules, L"a.c"), IsEmpty());
}

TEST(PathRules, IgnoresTheLetterCaseOfWindowsNames) {
  PathRules rules;
  rules.add(L"C:\\CI", L"/home");
  const std::vector<std::wstring> paths = suggestionsOf(rules, L"c:\\ci\\src\\A.c");
  ASSERT_EQ(paths.size(), 1u);
  EXPECT_TRUE(paths[0] == L"/home/src/A.c" || paths[0] == L"/home\\src\\A.c") << toUtf8(paths[0]);
}

TEST(PathRules, ServesEveryKind) {
  PathRules rules;
  rules.add(L"/ci", L"/home");
  Suggestions suggestions;
  EXPECT_TRUE(rules.onBinSearchStarted(L"/ci/app", suggestions));
  EXPECT_TRUE(rules.onSymSearchStarted(L"/ci/app.debug", L"/ci/app", L"", suggestions));
  EXPECT_THAT(suggestions.texts(), ElementsAre(L"/home/app", L"/home/app.debug"));
}

TEST(PathRules, LearnFromAConfirmedFileWhenTheyMay) {
  PathRules rules;
  rules.note(L"/ci/src/a.c", foundAt(L"/home/src/a.c", 6, 0), false);
  EXPECT_THAT(rules.rules(), IsEmpty());
  rules.note(L"/ci/src/a.c", foundAt(L"/home/src/a.c", 6, 1), true);
  EXPECT_THAT(rules.rules(), IsEmpty()) << "no check has confirmed the file";
  rules.note(L"/ci/src/a.c", foundAt(L"/home/src/a.c", 6, 0), true);
  rules.note(L"/ci/src/b.c", foundAt(L"/home/src/b.c", 6, 0), true);
  ASSERT_EQ(rules.rules().size(), 1u);
  EXPECT_TRUE(rules.rules()[0].isLearned);
  EXPECT_THAT(suggestionsOf(rules, L"/ci/lib/c.c"), ElementsAre(L"/home/lib/c.c"));
}

TEST(PathRules, CountConfirmations) {
  PathRules rules;
  rules.add(L"/other", L"/elsewhere");
  rules.add(L"/ci", L"/home");
  rules.note(L"/ci/a.c", foundAt(L"/home/a.c", 7, 0), false);
  rules.note(L"/ci/b.c", foundAt(L"/home/b.c", 7, 1), false);
  EXPECT_EQ(rules.rules()[0].confirmations, 0);
  EXPECT_EQ(rules.rules()[1].confirmations, 1) << "one was not contradicted only";
}

TEST(PathRules, DropWhatACheckRefutesUnlessItWasGiven) {
  PathRules rules;
  rules.add(L"/ci", L"/given");
  rules.note(L"/ci/src/a.c", foundAt(L"/learned/src/a.c", 6, 0), true);
  ASSERT_EQ(rules.rules().size(), 2u);
  rules.note(L"/ci/src/b.c", refutedAt(L"/given/src/b.c"), true);
  EXPECT_EQ(rules.rules().size(), 2u);
  rules.note(L"/ci/src/b.c", refutedAt(L"/learned/src/b.c"), true);
  ASSERT_EQ(rules.rules().size(), 1u);
  EXPECT_EQ(rules.rules()[0].to, L"/given");
}

TEST(PathRules, TriesGivenRulesBeforeTheNewestLearnedOne) {
  PathRules rules;
  rules.note(L"/ci/a.c", foundAt(L"/one/a.c", 6, 0), true);
  rules.note(L"/ci/b.c", foundAt(L"/two/b.c", 6, 0), true);
  PathRules given;
  given.add(L"/ci", L"/given");
  given.note(L"/ci/a.c", foundAt(L"/one/a.c", 6, 0), true);
  EXPECT_THAT(suggestionsOf(rules, L"/ci/c.c"), ElementsAre(L"/two/c.c", L"/one/c.c"));
  EXPECT_THAT(suggestionsOf(given, L"/ci/c.c"), ElementsAre(L"/given/c.c", L"/one/c.c"));
}

}  // namespace
}  // namespace quiver_tool
