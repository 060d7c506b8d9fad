// Tests of lookup_journal.h: who answers, what is left out then, servers, and the trace beside it.

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "vesk/trace_capture.h"

#include "core/trace.h"
#include "search/lookup_journal_fixture.h"
#include "search/search_step.h"
#include "support/callbacks.h"

namespace QV_2_9 {
namespace {

using quiver_test::Call;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::RecordingSearchStarted;
using testing::ElementsAre;
using testing::IsSupersetOf;

TEST_F(LookupJournalTest, TellsOfCanceledSearches) {
  m_tree.addFile("good/a.c");
  addDir("good", false, true);
  RecordingSearchStarted started;
  started.answer = [](const Call&, IStringContainer&) { return false; };
  m_env->setSearchStartedCallback(&started);
  EXPECT_THAT(findSrc(L"a.c"),
              ElementsAre(began(L"a.c"),
                          L"not 1 for 1",
                          L"not 2 for 1",
                          L"not 3 for 1",
                          L"not 4 for 1",
                          L"not 5 for 1",
                          L"not 6 for 1",
                          L"answer none step 0 confidence -1 by 0"));
}

TEST_F(LookupJournalTest, TellsOfStepsThatTheFilesFoundCallbackPulls) {
  m_tree.addFile("high/a.c");
  m_tree.addFile("low/a.c");
  addDir("high", false, true);
  addDir("low", false, false);
  RecordingFilesFound found;
  found.answer = [](const Call&, IValidFileIterator& files) {
    files.next();
    return files.next();
  };
  m_env->setFilesFoundCallback(&found);
  const Events events = findSrc(L"a.c");
  EXPECT_THAT(events, IsSupersetOf({L"end of 2", L"step 3", L"step 6", L"end of 6"}));
  EXPECT_EQ(events.back(), L"answer low/a.c step 6 confidence 1 by 4");
}

TEST_F(LookupJournalTest, TellsThatTheFilesFoundCallbackRefusedAndTheOtherAnswered) {
  m_tree.addFile("high/a.c");
  const std::wstring good = m_tree.addFile("good/b.c");
  addDir("high", false, true);
  RecordingFilesFound found;
  found.answer = [](const Call&, IValidFileIterator&) { return ObjectPtr<IValidFile>(); };
  RecordingNoFilesFound none;
  none.answer =
      [&](const Call&, IValidator& validator, IInvalidFileIterator&, IValidFileIterator&) {
        validator.validate(m_tree.path("absent").c_str());
        return validator.validate(good.c_str())->getValidFile();
      };
  m_env->setFilesFoundCallback(&found);
  m_env->setNoFilesFoundCallback(&none);
  const Events events = findSrc(L"a.c");
  EXPECT_EQ(Events(events.end() - 8, events.end()),
            (Events{L"end of 2",
                    L"candidate absent step 7 invalid 0 %FileDoesNotExist",
                    L"candidate good/b.c step 7 valid confidence 0",
                    L"not 3 for 2",
                    L"not 4 for 2",
                    L"not 5 for 2",
                    L"not 6 for 2",
                    L"answer good/b.c step 7 confidence 0 by 5"}));
}

TEST_F(LookupJournalTest, EndsWhenAnExceptionLeavesTheLookup) {
  m_tree.addFile("high/a.c");
  addDir("high", false, true);
  RecordingFilesFound found;
  found.answer = [](const Call&, IValidFileIterator&) -> ObjectPtr<IValidFile> {
    throw std::runtime_error("enough");
  };
  m_env->setFilesFoundCallback(&found);
  EXPECT_THROW(findSrc(L"a.c"), std::runtime_error);
  const Events& events = m_notebook.events;
  EXPECT_EQ(Events(events.end() - 5, events.end()),
            (Events{L"not 3 for 3",
                    L"not 4 for 3",
                    L"not 5 for 3",
                    L"not 6 for 3",
                    L"answer none step 0 confidence -1 by 6"}));
}

TEST_F(LookupJournalTest, EndsTheRunningStepWhenAnExceptionLeavesIt) {
  m_tree.addFile("high/a.c");
  addDir("high", false, true);
  m_check.m_throws = true;
  EXPECT_THROW(findSrc(L"a.c"), std::runtime_error);
  const Events& events = m_notebook.events;
  EXPECT_EQ(Events(events.end() - 7, events.end()),
            (Events{L"step 2",
                    L"end of 2",
                    L"not 3 for 3",
                    L"not 4 for 3",
                    L"not 5 for 3",
                    L"not 6 for 3",
                    L"answer none step 0 confidence -1 by 6"}));
}

TEST_F(LookupJournalTest, TellsOfAStepAgainThatAFilesFoundCallbackRunsAgain) {
  const std::wstring suggestion = m_tree.addFile("b.c");
  m_tree.addFile("high/a.c");
  addDir("high", false, true);
  RecordingFilesFound found;
  found.answer = [&](const Call&, IValidFileIterator& files) {
    const ObjectPtr<IValidFile> first = files.next();
    m_check.m_throws = true;
    EXPECT_THROW(files.next(), std::runtime_error);
    m_check.m_throws = false;
    files.next();
    return first;
  };
  m_env->setFilesFoundCallback(&found);
  EXPECT_THAT(findSrc(L"a.c", suggestion.c_str()),
              IsSupersetOf({L"step 2", L"end of 2", L"step 2", L"end of 2"}));
}

TEST_F(LookupJournalTest, NestsLookupsOfCallbacks) {
  m_tree.addFile("high/a.c");
  addDir("high", false, true);
  RecordingFilesFound found;
  found.answer = [&](const Call& call, IValidFileIterator& files) {
    if (call.name == L"a.c")
      m_search->findSrcFile(L"b.c", nullptr, nullptr, nullptr, nullptr);
    return files.next();
  };
  m_env->setFilesFoundCallback(&found);
  const Events events = findSrc(L"a.c");
  const auto nested = std::ranges::find(events, L"began 3 b.c in directories b.c of  with ");
  ASSERT_NE(nested, events.end());
  EXPECT_EQ(*(nested - 1), L"end of 2");
  EXPECT_EQ(*(events.end() - 6), L"answer none step 0 confidence -1 by 0");
  EXPECT_EQ(events.back(), L"answer high/a.c step 2 confidence 1 by 4");
}

TEST_F(LookupJournalTest, TellsOfSymbolServersAmongTheDirectories) {
  m_dirs->addSearchDir(scSymbolFiles, L"srv*cache*https://host", false, true);
  EXPECT_THAT(findSym(L"a.pdb"),
              IsSupersetOf({L"directory srv*cache*https://host server", L"end of 2"}));
}

// The journal passes on what a watcher of downloads hears.
TEST_F(LookupJournalTest, TellsOfServers) {
  internal::LookupJournal journal(m_notebook, true);
  journal.stepBegan(ssSystemDirs);
  journal.onStore({L"https://host",
                   L"https://host/a.pdb",
                   L"a.pdb/1",
                   symsrv_1_0::StoreOutcome::kMismatch,
                   L"other",
                   12});
  journal.stepEnded(ssSystemDirs);
  EXPECT_THAT(
      m_notebook.events,
      ElementsAre(
          L"step 4", L"server https://host https://host/a.pdb a.pdb/1 2 other 12", L"end of 4"));
}

/// What the trace says of an answer in this step, 0 for none.
std::string tracedEnd(int step) {
  if (step == 0)
    return "Nothing found";
  std::string text = "in step: ";
  const wchar_t* name = searchStepToString(static_cast<search_step_t>(step));
  for (; *name; ++name) text += static_cast<char>(*name);
  return text;
}

// For the road through each step, and for that through all in vain.
TEST_F(LookupJournalTest, AgreesWithTheTrace) {
  m_tree.addFile("archive/1.c/md5/1.c");
  m_tree.addFile("high/2.c");
  const std::wstring itself = m_tree.addFile("3.c");
  m_tree.addFile("system/4.c");
  m_tree.addFile("around/5.c");
  m_tree.addFile("low/6.c");
  const auto archive = IEditableSearchDirContainer::create();
  archive->addSearchDir(scAllFiles, m_tree.path("archive").c_str(), true, false);
  m_env->setArchiveSearchDirs(archive);
  addDir("high", false, true);
  addDir("low", false, false);
  m_routines.systemDirs = {{m_tree.path("system"), false}};
  m_binary = m_tree.addFile("around/bin/app");
  const std::vector<std::function<Events()>> roads = {[&] { return findSrc(L"absent.c"); },
                                                      [&] { return findSrc(L"1.c"); },
                                                      [&] { return findSrc(L"2.c"); },
                                                      [&] { return findSrc(itself); },
                                                      [&] { return findBin(L"4.c"); },
                                                      [&] { return findSrc(L"5.c"); },
                                                      [&] { return findSrc(L"6.c"); }};
  for (int step = 0; step < static_cast<int>(roads.size()); ++step) {
    vesk_1_8::TraceCapture capture(internal::traceChannel());
    const Events events = roads[static_cast<std::size_t>(step)]();
    EXPECT_NE(events.back().find(L" step " + std::to_wstring(step) + L" "), std::wstring::npos)
        << step;
    const std::string expected = tracedEnd(step);
    EXPECT_TRUE(std::ranges::any_of(capture.records(), [&](const vesk_1_8::Record& record) {
      return record.text.ends_with(expected);
    })) << expected;
  }
}

}  // namespace
}  // namespace QV_2_9
