// What a journal tells of a lookup's outcome.

#include "outcome_journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quiver_tool {
namespace {

using testing::ElementsAre;

using Events = std::vector<std::vector<std::int64_t>>;

std::vector<std::int64_t> kindsOf(const Events& events) {
  std::vector<std::int64_t> kinds;
  for (const std::vector<std::int64_t>& event : events) kinds.push_back(event[0]);
  return kinds;
}

TEST(OutcomeJournal, PutsCandidatesBelowTheirSteps) {
  Outcome outcome;
  outcome.rejected = {{L"/s/a.c", 2, 1, L"%ChecksumMismatch"}, {L"/x/a.c", 7, 0, L"%CantOpenFile"}};
  outcome.candidates = {{L"/t/a.c", 3, 0}};
  outcome.found = outcome.candidates[0];
  TextPool texts;
  const Events events = journalOf(outcome, texts).events();
  EXPECT_THAT(kindsOf(events), ElementsAre(4, 2, 2, 4, 2, 4, 7, 7, 7, 8));
  EXPECT_THAT(events[0], ElementsAre(4, 0, 1, kOutcomeInvalid, 7, 2));
  EXPECT_EQ(texts.texts()[2], L"cannot be opened");
  EXPECT_EQ(events[5][3], kOutcomeValid);
  EXPECT_EQ(texts.texts()[static_cast<std::size_t>(events[9][1])], L"the recorded name itself");
}

TEST(OutcomeJournal, HasEveryStepOfAFileThatWasNotFound) {
  TextPool texts;
  EXPECT_THAT(kindsOf(journalOf(Outcome(), texts).events()), ElementsAre(2, 2, 2, 2, 2, 2, 8));
}

TEST(OutcomeJournal, HasNoStepRunForASuggestedPath) {
  Outcome outcome;
  outcome.candidates = {{L"/t/a.c", 7, 0}};
  outcome.found = outcome.candidates[0];
  TextPool texts;
  EXPECT_THAT(kindsOf(journalOf(outcome, texts).events()), ElementsAre(4, 7, 7, 7, 7, 7, 7, 8));
}

}  // namespace
}  // namespace quiver_tool
