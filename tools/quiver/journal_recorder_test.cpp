// What a recorder writes down of each event.

#include "journal_recorder.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quiver_tool {
namespace {

using namespace QV_2_9;
using testing::ElementsAre;
using testing::IsEmpty;

using Event = std::vector<std::int64_t>;

class JournalRecorderTest : public testing::Test {
 protected:
  Event only() {
    const std::vector<Event> events = m_recorder.take().events();
    EXPECT_EQ(events.size(), 1u);
    return events.empty() ? Event() : events[0];
  }
  const std::wstring& text(std::int64_t number) {
    return m_texts.texts()[static_cast<std::size_t>(number)];
  }

  TextPool m_texts;
  JournalRecorder m_recorder{m_texts};
};

TEST_F(JournalRecorderTest, TakesEachLookupByItself) {
  m_recorder.onLookupBegan({scSourceFiles, L"a.c", L"a.c", L"", L""});
  m_recorder.onStepBegan(ssSystemDirs);
  EXPECT_THAT(m_recorder.take().events(), ElementsAre(ElementsAre(kRecordedStep, 4)));
  EXPECT_THAT(m_recorder.take().events(), IsEmpty());
}

TEST_F(JournalRecorderTest, TellsWhatASearchedDirectoryHad) {
  m_recorder.onDirectory({L"/s", true, jdSearched, true, 12});
  const Event event = only();
  EXPECT_THAT(event, ElementsAre(kRecordedDirectory, 0, 7, 12, 1));
  EXPECT_EQ(text(event[1]), L"/s");
  EXPECT_EQ(text(event[4]), L"");
}

TEST_F(JournalRecorderTest, TellsWhyADirectoryWasNotSearched) {
  const std::pair<journal_directory_state_t, const wchar_t*> rows[] = {
      {jdMissing, L"no such directory"},
      {jdUnreadable, L"cannot be read"},
      {jdRepeated, L"searched before"},
      {jdNotSearched, L"not searched"},
      {jdSymbolServer, L"a symbol server"}};
  for (const auto& [state, words] : rows) {
    m_recorder.onDirectory({L"/s", false, state, false, 0});
    const Event event = only();
    EXPECT_EQ(event[2], 0);
    EXPECT_EQ(text(event[4]), words);
  }
}

TEST_F(JournalRecorderTest, GivesCandidatesTheirVerdicts) {
  m_recorder.onCandidate({L"/s/a.c", 0x10006, jcInvalid, 1, L"%ChecksumMismatch", -1});
  const Event invalid = only();
  EXPECT_EQ(invalid[3], kOutcomeInvalid);
  EXPECT_EQ(invalid[4], 0x10006);
  EXPECT_EQ(text(invalid[1]) + text(invalid[2]), L"/s/a.c");
  EXPECT_EQ(text(invalid[5]), L"has another checksum");
  m_recorder.onCandidate({L"/s/a.c", 3, jcValid, -1, L"", 0});
  const Event valid = only();
  EXPECT_EQ(valid[3], kOutcomeValid);
  EXPECT_EQ(text(valid[5]), L"confirmed");
  m_recorder.onCandidate({L"/s/a.c", 3, jcMissing, -1, L"", -1});
  const Event missing = only();
  EXPECT_EQ(missing[3], kOutcomeMissing);
  EXPECT_EQ(text(missing[5]), L"");
  m_recorder.onCandidate({L"/s/a.c", 6, jcDuplicate, 1, L"%ChecksumMismatch", -1});
  EXPECT_EQ(only()[3], kOutcomeDuplicate);
}

TEST_F(JournalRecorderTest, TellsWhatServersAnswered) {
  m_recorder.onServer({L"https://host", L"", L"a.pdb/1", jsFailed, L"timed out", 5});
  const Event failed = only();
  EXPECT_EQ(text(failed[1]), L"https://host");
  EXPECT_EQ(text(failed[2]), L"a.pdb/1");
  EXPECT_EQ(text(failed[3]), L"failed (timed out)");
  EXPECT_EQ(failed[4], 5);
  m_recorder.onServer({L"/cache", L"", L"", jsMissing, L"", 0});
  EXPECT_EQ(text(only()[3]), L"does not have it");
}

TEST_F(JournalRecorderTest, TellsOfStepsAndTheEnd) {
  m_recorder.onSuggestion({L"/s/a.c", true});
  EXPECT_THAT(only(), ElementsAre(kRecordedSuggestion, 0));
  m_recorder.onStepEnded({ssAroundBinaryLookup, 250, jiNoBinary});
  const Event end = only();
  EXPECT_THAT(end, ElementsAre(kRecordedStepEnd, 5, 250, 1));
  EXPECT_EQ(text(end[3]), L"the binary is not known");
  m_recorder.onStepEnded({ssAroundBinaryLookup, 250, jiBareBinary});
  EXPECT_EQ(text(only()[3]), L"the binary has no directory");
  m_recorder.onStepNotRun({ssLowPrioritySearchDirs, jnAnswered});
  EXPECT_EQ(text(only()[2]), L"the file was found before");
  m_recorder.onLookupEnded({L"/s/a.c", 3, 0, jaStep, 9});
  EXPECT_EQ(text(only()[1]), L"the recorded name itself");
  m_recorder.onLookupEnded({nullptr, 0, -1, jaNobody, 9});
  EXPECT_EQ(text(only()[1]), L"");
}

}  // namespace
}  // namespace quiver_tool
