// Tests of lookup_journal.h: suggestions and the six steps, event by event.

#include "search/lookup_journal.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "search/files_finder.h"
#include "search/lookup_journal_fixture.h"
#include "support/callbacks.h"

namespace QV_2_9 {
namespace {

using quiver_test::Call;
using quiver_test::RecordingSearchStarted;
using testing::ElementsAre;
using testing::IsSupersetOf;

TEST_F(LookupJournalTest, IsSilentForEmptyNames) {
  EXPECT_THAT(findSrc(L""), ElementsAre());
  EXPECT_THAT(findBin(L""), ElementsAre());
  EXPECT_THAT(findSym(L""), ElementsAre());
}

TEST_F(LookupJournalTest, IsNotNeeded) {
  m_tree.addFile("good/a.c");
  addDir("good", false, true);
  const ObjectPtr<IFileSearch> search = createFileSearchWithJournal(m_env, nullptr);
  EXPECT_TRUE(search->findSrcFile(L"a.c", nullptr, nullptr, nullptr, nullptr));
}

TEST_F(LookupJournalTest, TellsWhySixStepsHadNothingToDo) {
  EXPECT_THAT(findSrc(L"a.c"),
              ElementsAre(began(L"a.c"),
                          L"step 1",
                          L"end of 1 idle 2",
                          L"step 2",
                          L"end of 2 idle 2",
                          L"step 3",
                          L"candidate a.c step 3 missing",
                          L"end of 3",
                          L"step 4",
                          L"end of 4 idle 4",
                          L"step 5",
                          L"end of 5 idle 3",
                          L"step 6",
                          L"end of 6 idle 2",
                          L"answer none step 0 confidence -1 by 0"));
}

TEST_F(LookupJournalTest, TellsThatABareNamedBinaryHasNoDirectories) {
  m_binary = L"app";
  EXPECT_THAT(findSrc(L"a.c"), IsSupersetOf({L"step 5", L"end of 5 idle 5"}));
  EXPECT_THAT(findSym(L"app.pdb"), IsSupersetOf({L"step 5", L"end of 5 idle 5"}));
}

TEST_F(LookupJournalTest, TellsThatThereIsNoEnvironment) {
  m_search = createFileSearchWithJournal(nullptr, &m_notebook);
  EXPECT_THAT(findBin(L"a.dll"),
              ElementsAre(L"began 1 a.dll in directories a.dll of  with ",
                          L"step 1",
                          L"end of 1 idle 1",
                          L"step 2",
                          L"end of 2 idle 1",
                          L"step 3",
                          L"candidate a.dll step 3 missing",
                          L"end of 3",
                          L"step 4",
                          L"end of 4 idle 2",
                          L"step 5",
                          L"end of 5 idle 4",
                          L"step 6",
                          L"end of 6 idle 1",
                          L"answer none step 0 confidence -1 by 0"));
}

TEST_F(LookupJournalTest, TellsOfAnAcceptedSuggestion) {
  const std::wstring path = m_tree.addFile("good/a.c");
  EXPECT_THAT(findSrc(L"a.c", path.c_str()),
              ElementsAre(began(L"a.c"),
                          L"caller suggests good/a.c",
                          L"candidate good/a.c step 7 valid confidence 0",
                          L"not 1 for 0",
                          L"not 2 for 0",
                          L"not 3 for 0",
                          L"not 4 for 0",
                          L"not 5 for 0",
                          L"not 6 for 0",
                          L"answer good/a.c step 7 confidence 0 by 1"));
}

TEST_F(LookupJournalTest, TellsTheCallersSuggestionFromThatOfTheCallback) {
  const std::wstring odd = m_tree.addFile("odd/a.c");
  const std::wstring good = m_tree.addFile("good/a.c");
  RecordingSearchStarted started;
  started.answer = [&](const Call&, IStringContainer& suggestions) {
    suggestions.add(m_tree.path("absent").c_str());
    suggestions.add(good.c_str());
    return true;
  };
  m_env->setSearchStartedCallback(&started);
  const Events events = findSrc(L"a.c", odd.c_str());
  EXPECT_THAT(Events(events.begin(), events.begin() + 7),
              ElementsAre(began(L"a.c"),
                          L"caller suggests odd/a.c",
                          L"candidate odd/a.c step 7 invalid 2 %Odd",
                          L"callback suggests absent",
                          L"candidate absent step 7 missing",
                          L"callback suggests good/a.c",
                          L"candidate good/a.c step 7 valid confidence 0"));
  EXPECT_EQ(events.back(), L"answer good/a.c step 7 confidence 0 by 2");
}

TEST_F(LookupJournalTest, GivesTheCallersSuggestionTheCreditWhenBothAreValid) {
  const std::wstring first = m_tree.addFile("good1/a.c");
  const std::wstring second = m_tree.addFile("good2/a.c");
  RecordingSearchStarted started;
  started.answer = [&](const Call&, IStringContainer& suggestions) {
    suggestions.add(second.c_str());
    return true;
  };
  m_env->setSearchStartedCallback(&started);
  EXPECT_EQ(findSrc(L"a.c", first.c_str()).back(), L"answer good1/a.c step 7 confidence 0 by 1");
}

TEST_F(LookupJournalTest, TellsOfTheArchiveStep) {
  m_tree.addFile("archive/a.c/1/good/a.c");
  const auto archive = IEditableSearchDirContainer::create();
  archive->addSearchDir(scAllFiles, m_tree.path("archive").c_str(), true, false);
  m_env->setArchiveSearchDirs(archive);
  EXPECT_THAT(findSrc(L"a.c"),
              ElementsAre(began(L"a.c"),
                          L"step 1",
                          L"candidate archive/a.c/1/good/a.c step 65537 valid confidence 0",
                          L"tree archive/a.c ended 3",
                          L"end of 1",
                          L"not 2 for 0",
                          L"not 3 for 0",
                          L"not 4 for 0",
                          L"not 5 for 0",
                          L"not 6 for 0",
                          L"answer archive/a.c/1/good/a.c step 1 confidence 0 by 3"));
}

TEST_F(LookupJournalTest, TellsOfEveryDirectoryOfAScan) {
  m_tree.addFile("first/other.c");
  m_tree.addFile("second/good/a.c");
  m_tree.addFile("odd/a.c");
  addDir("first", false, true);
  addDir("absent", false, true);
  addDir("odd", false, true);
  addDir("second/good", false, true);
  addDir("first", false, true);
  addDir("second", true, true);
  EXPECT_THAT(findSrc(L"a.c"),
              ElementsAre(began(L"a.c"),
                          L"step 1",
                          L"end of 1 idle 2",
                          L"step 2",
                          L"directory first searched",
                          L"directory absent missing",
                          L"candidate odd/a.c step 2 invalid 2 %Odd",
                          L"directory odd searched",
                          L"candidate second/good/a.c step 2 valid confidence 0",
                          L"directory second/good ended",
                          L"candidate second/good/a.c step 65538 duplicate confidence 0",
                          L"tree second searched 2",
                          L"end of 2",
                          L"not 3 for 0",
                          L"not 4 for 0",
                          L"not 5 for 0",
                          L"not 6 for 0",
                          L"answer second/good/a.c step 2 confidence 0 by 3"));
}

TEST_F(LookupJournalTest, TellsOfTheNameItself) {
  const std::wstring path = m_tree.addFile("good/a.c");
  const Events events = findSrc(path);
  EXPECT_THAT(events,
              IsSupersetOf({L"candidate good/a.c step 3 valid confidence 0",
                            L"not 4 for 0",
                            L"answer good/a.c step 3 confidence 0 by 3"}));
}

TEST_F(LookupJournalTest, TellsOfTheSystemsDirectories) {
  const std::wstring dir = m_tree.addDirectory("system");
  m_tree.addFile("system/a.dll");
  m_routines.systemDirs = {{dir, false}};
  EXPECT_THAT(findBin(L"a.dll"),
              IsSupersetOf({L"candidate system/a.dll step 4 valid confidence 1",
                            L"directory system searched",
                            L"end of 4",
                            L"not 5 for 0",
                            L"answer system/a.dll step 4 confidence 1 by 3"}));
}

TEST_F(LookupJournalTest, TellsOfTheWayUpFromTheBinary) {
  m_tree.addFile("good/a.c");
  m_binary = m_tree.addFile("good/bin/app");
  EXPECT_THAT(findSrc(L"a.c"),
              IsSupersetOf({L"directory good/bin/ searched",
                            L"candidate good/a.c step 5 valid confidence 0",
                            L"directory good/ ended",
                            L"end of 5",
                            L"not 6 for 0",
                            L"answer good/a.c step 5 confidence 0 by 3"}));
}

TEST_F(LookupJournalTest, TellsOfTheLastStep) {
  m_tree.addFile("low/a.c");
  addDir("low", false, false);
  const Events events = findSrc(L"a.c");
  EXPECT_EQ(Events(events.end() - 5, events.end()),
            (Events{L"step 6",
                    L"candidate low/a.c step 6 valid confidence 1",
                    L"directory low searched",
                    L"end of 6",
                    L"answer low/a.c step 6 confidence 1 by 3"}));
}

TEST_F(LookupJournalTest, LeavesOutWhatComesAfterAConfirmedFile) {
  m_tree.addFile("good/a.c");
  m_tree.addFile("other/a.c");
  addDir("good", false, true);
  addDir("other", false, true);
  EXPECT_THAT(findSrc(L"a.c"),
              IsSupersetOf({L"directory good ended", L"directory other not searched"}));
}

TEST_F(LookupJournalTest, NamesEveryKindOfRejection) {
  m_tree.addFile("odd mismatch/a.c");
  m_tree.addFile("odd/a.c");
  addDir("odd mismatch", false, true);
  addDir("odd", false, true);
  const std::wstring directory = m_tree.addDirectory("a.c");
  EXPECT_THAT(findSrc(L"a.c", directory.c_str()),
              IsSupersetOf({L"candidate a.c step 7 invalid 0 %FileIsDirectory",
                            L"candidate odd mismatch/a.c step 2 invalid 1 %Odd",
                            L"candidate odd/a.c step 2 invalid 2 %Odd",
                            L"answer none step 0 confidence -1 by 0"}));
}

TEST_F(LookupJournalTest, TellsOfRejectedDuplicates) {
  m_tree.addFile("tree/odd/a.c");
  addDir("tree/odd", false, true);
  addDir("tree", true, true);
  EXPECT_THAT(findSrc(L"a.c"),
              IsSupersetOf({L"candidate tree/odd/a.c step 2 invalid 2 %Odd",
                            L"candidate tree/odd/a.c step 65538 duplicate 2 %Odd"}));
}

TEST_F(LookupJournalTest, TellsOfDirectoriesThatAScanHasTwice) {
  m_tree.addFile("dir/other.c");
  internal::LookupJournal journal(m_notebook, true);
  FilesFinder finder(nullptr, &journal);
  finder.addDirectory(m_tree.path("dir").c_str(), false);
  finder.addDirectory(m_tree.path("dir").c_str(), false);
  internal::RecordingResults results;
  finder.find(L"a.c", results, 2);
  EXPECT_THAT(m_notebook.events, ElementsAre(L"directory dir searched", L"directory dir repeated"));
}

}  // namespace
}  // namespace QV_2_9
