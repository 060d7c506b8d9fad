// Journals as numbers, and the texts that they share.

#include "lookup_record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quiver_tool {
namespace {

using testing::ElementsAre;

TEST(TextPool, KeepsEachTextOnce) {
  TextPool texts;
  EXPECT_EQ(texts.numberOf(L"a"), 0);
  EXPECT_EQ(texts.numberOf(L"b"), 1);
  EXPECT_EQ(texts.numberOf(L"a"), 0);
  EXPECT_THAT(texts.texts(), ElementsAre(L"a", L"b"));
}

TEST(TextPool, KnowsItsTextsAfterAMove) {
  TextPool first;
  for (int i = 0; i < 100; ++i) first.numberOf(std::to_wstring(i));
  TextPool texts = std::move(first);
  EXPECT_EQ(texts.numberOf(L"99"), 99);
  EXPECT_EQ(texts.numberOf(L"new"), 100);
}

TEST(LookupRecord, GivesEventsBackInOrder) {
  TextPool texts;
  LookupRecord record;
  EXPECT_TRUE(record.isEmpty());
  record.addSuggestion(texts, L"/s/a.c");
  record.addStep(2);
  record.addDirectory(texts, {L"/s", true, true, true, 12, L""});
  record.addDirectory(texts, {L"/gone", false, false, false, 0, L"missing"});
  record.addCandidate(texts, L"/s/a.c", kOutcomeInvalid, 2, L"has another checksum");
  record.addServer(texts, {L"srv*x", L"3F0A1", L"not found", 7});
  record.addStepEnd(texts, 2, 350, L"");
  record.addStepOff(texts, 3, L"found before");
  record.addEnd(texts, L"nobody");
  EXPECT_THAT(record.events(),
              ElementsAre(ElementsAre(1, 0),
                          ElementsAre(2, 2),
                          ElementsAre(3, 1, 7, 12, 2),
                          ElementsAre(3, 3, 0, 0, 4),
                          ElementsAre(4, 5, 6, 2, 2, 7),
                          ElementsAre(5, 8, 9, 10, 7),
                          ElementsAre(6, 2, 350, 2),
                          ElementsAre(7, 3, 11),
                          ElementsAre(8, 12)));
  EXPECT_EQ(texts.texts()[5], L"/s/");
  EXPECT_EQ(texts.texts()[6], L"a.c");
}

TEST(LookupRecord, SharesDirectoriesAndNamesOfCandidates) {
  TextPool texts;
  LookupRecord record;
  for (const wchar_t* directory : {L"C:\\one\\", L"C:\\two\\"}) {
    for (const wchar_t* name : {L"a.c", L"b.c"})
      record.addCandidate(texts, std::wstring(directory) + name, kOutcomeMissing, 6, L"");
  }
  EXPECT_THAT(texts.texts(), ElementsAre(L"C:\\one\\", L"a.c", L"", L"b.c", L"C:\\two\\"));
}

}  // namespace
}  // namespace quiver_tool
