// Tests of found_files_lazy_iterator.h, over a strategy and a validator made of functions.

#include "search/found_files_lazy_iterator.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "os/path_utils.h"
#include "search/search_results.h"
#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

/// Runs `onStep(n, results)` for step n.
class ScriptedStrategy final : public IFileSearchStrategy {
 public:
  std::function<void(int, ISearchResultsContainer&)> onStep = [](int, auto&) {};
  std::vector<int> stepsRun;

  bool fireSearchStarted(ISearchStartedCallback*, IStringContainer&) override { return true; }
  void searchArchiveDirs(ISearchResultsContainer& results) override { run(1, results); }
  void searchHighPriorityDirs(ISearchResultsContainer& results) override { run(2, results); }
  bool lookupAbsoluteName(ISearchResultsContainer& results) override {
    run(3, results);
    return true;
  }
  void searchSystemDirs(ISearchResultsContainer& results) override { run(4, results); }
  void lookupAroundBinary(ISearchResultsContainer& results) override { run(5, results); }
  void searchLowPriorityDirs(ISearchResultsContainer& results) override { run(6, results); }
  ObjectPtr<IValidFile> fireFilesFound(IFilesFoundCallback*, IValidFileIterator&) override {
    return nullptr;
  }
  ObjectPtr<IValidFile> fireNoFilesFound(INoFilesFoundCallback*,
                                         IInvalidFileIterator&,
                                         IValidFileIterator&) override {
    return nullptr;
  }

 private:
  void run(int step, ISearchResultsContainer& results) {
    stepsRun.push_back(step);
    onStep(step, results);
  }
};

/// Accepts with the confidence of `judge`; a negative confidence rejects.
class ScriptedValidator final : public IValidatorInternal {
 public:
  std::function<int(const std::wstring&)> judge = [](const std::wstring&) { return 1; };
  std::vector<std::uint32_t> steps;

  ObjectPtr<IValidatedFile> validate(const wchar_t* path) override {
    return validateInStep(path, 7);
  }
  ObjectPtr<IValidatedFile> validateInStep(const wchar_t* path, std::uint32_t step) override {
    steps.push_back(step);
    const int confidence = judge(path);
    const auto number = static_cast<std::int32_t>(step & 0xFFFFu);
    if (confidence < 0)
      return new ValidatedFile(nullptr, new InvalidFile(path, 0, L"%No", number));
    return new ValidatedFile(
        new ValidFile(toCanonicalAbsolutePath(path, false), confidence, number), nullptr);
  }
};

class FoundFilesLazyIteratorTest : public testing::Test {
 protected:
  std::wstring file(const std::string& name) {
    m_tree.addFile(name, name);
    return m_tree.path(name);
  }
  bool add(const std::wstring& path, std::uint32_t step = 2) {
    return m_files.addFoundFile(path.c_str(), step, m_stop);
  }
  std::wstring nextPath() {
    const ObjectPtr<IValidFile> next = m_files.next();
    return next ? next->getPath() : L"";
  }
  std::vector<std::wstring> invalidPaths() {
    std::vector<std::wstring> paths;
    m_files.invalidFilesIterator().reset();
    while (const ObjectPtr<IInvalidFile> file = m_files.invalidFilesIterator().next())
      paths.emplace_back(file->getPath());
    return paths;
  }

  quiver_test::TempTree m_tree;
  ScriptedStrategy m_strategy;
  ScriptedValidator m_validator;
  FoundFilesLazyIterator m_files{m_strategy, m_validator};
  bool m_stop = false;
};

TEST_F(FoundFilesLazyIteratorTest, DropsCandidatesThatDoNotExist) {
  EXPECT_FALSE(add(m_tree.path("absent")));
  EXPECT_FALSE(add(L""));
  EXPECT_FALSE(m_files.addFoundFile(nullptr, 2, m_stop));
  EXPECT_TRUE(m_validator.steps.empty());
  EXPECT_TRUE(invalidPaths().empty());
}

TEST_F(FoundFilesLazyIteratorTest, HandsTheWholeStepValueToTheValidator) {
  EXPECT_TRUE(add(file("a"), 0x10006));
  EXPECT_EQ(m_validator.steps, std::vector<std::uint32_t>{0x10006});
  EXPECT_EQ(m_files.next()->getStep(), 6);
}

TEST_F(FoundFilesLazyIteratorTest, StopsTheScanAtAConfirmedFileOnly) {
  m_stop = true;
  EXPECT_TRUE(add(file("ranked")));
  EXPECT_FALSE(m_stop);
  m_validator.judge = [](const std::wstring&) { return 0; };
  EXPECT_TRUE(add(file("confirmed")));
  EXPECT_TRUE(m_stop);
}

TEST_F(FoundFilesLazyIteratorTest, DoesNotStopAtADuplicateOfAConfirmedFile) {
  m_validator.judge = [](const std::wstring&) { return 0; };
  const std::wstring path = file("a");
  add(path);
  EXPECT_FALSE(add(path));
  EXPECT_FALSE(m_stop);
}

TEST_F(FoundFilesLazyIteratorTest, KeepsTheFirstFindingOfAFile) {
  const std::wstring path = file("a");
  EXPECT_TRUE(add(path, 2));
  EXPECT_FALSE(add(path, 6));
  EXPECT_EQ(m_files.next()->getStep(), 2);
  EXPECT_EQ(nextPath(), L"");
}

TEST_F(FoundFilesLazyIteratorTest, ValidatesADuplicateBeforeItIsDropped) {
  const std::wstring path = file("a");
  add(path);
  add(path);
  EXPECT_EQ(m_validator.steps.size(), 2u);
}

TEST_F(FoundFilesLazyIteratorTest, TakesPathsThatDifferInCaseForOneFile) {
  EXPECT_TRUE(add(file("dir/a.txt")));
  EXPECT_FALSE(add(file("dir/A.TXT")));
  m_validator.judge = [](const std::wstring&) { return -1; };
  add(file("dir/b.txt"));
  add(file("dir/B.TXT"));
  EXPECT_EQ(invalidPaths(), std::vector<std::wstring>{m_tree.path("dir/b.txt")});
}

TEST_F(FoundFilesLazyIteratorTest, ComparesTheCanonicalPathsOfTheFiles) {
  const std::wstring path = file("dir/a.txt");
  EXPECT_TRUE(add(path));
  EXPECT_FALSE(add(m_tree.path("dir") + L"/./a.txt"));
}

TEST_F(FoundFilesLazyIteratorTest, HoldsAFileInBothListsWhenTheVerdictChanges) {
  const std::wstring path = file("a");
  m_validator.judge = [](const std::wstring&) { return -1; };
  EXPECT_FALSE(add(path));
  m_validator.judge = [](const std::wstring&) { return 1; };
  EXPECT_TRUE(add(path));
  EXPECT_EQ(invalidPaths(), std::vector<std::wstring>{path});
  EXPECT_EQ(nextPath(), path);
}

TEST_F(FoundFilesLazyIteratorTest, SurvivesAValidatorThatAnswersNothing) {
  class Silent final : public IValidatorInternal {
   public:
    ObjectPtr<IValidatedFile> answer;
    ObjectPtr<IValidatedFile> validate(const wchar_t*) override { return answer; }
    ObjectPtr<IValidatedFile> validateInStep(const wchar_t*, std::uint32_t) override {
      return answer;
    }
  } silent;
  FoundFilesLazyIterator files(m_strategy, silent);
  const std::wstring path = file("a");
  EXPECT_FALSE(files.addFoundFile(path.c_str(), 2, m_stop));
  silent.answer = new ValidatedFile(nullptr, nullptr);
  EXPECT_FALSE(files.addFoundFile(path.c_str(), 2, m_stop));
}

TEST_F(FoundFilesLazyIteratorTest, RunsNoStepWhileFilesAreLeft) {
  const std::wstring path = file("a");
  m_files.addSuggestedResolution(path.c_str());
  EXPECT_EQ(m_files.next()->getStep(), 7);
  EXPECT_TRUE(m_strategy.stepsRun.empty());
}

TEST_F(FoundFilesLazyIteratorTest, RunsStepsOnlyUntilOneYieldsAFile) {
  const std::wstring path = file("a");
  m_strategy.onStep = [&](int step, ISearchResultsContainer&) {
    if (step == 3)
      add(path, 3);
  };
  EXPECT_EQ(nextPath(), path);
  EXPECT_EQ(m_strategy.stepsRun, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(nextPath(), L"");
  EXPECT_EQ(m_strategy.stepsRun, (std::vector<int>{1, 2, 3, 4, 5, 6}));
}

TEST_F(FoundFilesLazyIteratorTest, RunsNoStepTwiceAfterTheEnd) {
  EXPECT_FALSE(m_files.next());
  EXPECT_FALSE(m_files.next());
  m_files.reset();
  EXPECT_FALSE(m_files.next());
  EXPECT_EQ(m_strategy.stepsRun.size(), 6u);
}

TEST_F(FoundFilesLazyIteratorTest, HandsOutAFileThatArrivesAfterTheEnd) {
  EXPECT_FALSE(m_files.next());
  const std::wstring first = file("a");
  const std::wstring second = file("b");
  add(first);
  add(second);
  EXPECT_EQ(nextPath(), first);
  EXPECT_EQ(nextPath(), second);
}

TEST_F(FoundFilesLazyIteratorTest, HandsTheSameFilesOutAgainAfterReset) {
  const std::wstring first = file("a");
  const std::wstring second = file("b");
  m_strategy.onStep = [&](int step, ISearchResultsContainer&) {
    if (step == 2) {
      add(first);
      add(second);
    }
  };
  EXPECT_EQ(nextPath(), first);
  EXPECT_EQ(nextPath(), second);
  m_files.reset();
  EXPECT_EQ(nextPath(), first);
  EXPECT_EQ(nextPath(), second);
  EXPECT_EQ(m_strategy.stepsRun, (std::vector<int>{1, 2}));
}

TEST_F(FoundFilesLazyIteratorTest, RunsAStepAgainThatThrew) {
  bool broken = true;
  m_strategy.onStep = [&](int step, ISearchResultsContainer&) {
    if (step == 2 && broken)
      throw std::runtime_error("check failed");
  };
  EXPECT_THROW(m_files.next(), std::runtime_error);
  broken = false;
  EXPECT_FALSE(m_files.next());
  EXPECT_EQ(m_strategy.stepsRun, (std::vector<int>{1, 2, 2, 3, 4, 5, 6}));
}

TEST_F(FoundFilesLazyIteratorTest, ShowsPlainViewsOnlyAfterReset) {
  const std::wstring path = file("a");
  add(path);
  EXPECT_FALSE(m_files.validFilesIterator().next());
  m_files.validFilesIterator().reset();
  EXPECT_STREQ(m_files.validFilesIterator().next()->getPath(), path.c_str());
  EXPECT_FALSE(m_files.validFilesIterator().next());
  EXPECT_TRUE(m_strategy.stepsRun.empty());
}

TEST_F(FoundFilesLazyIteratorTest, LeavesFilesAliveThatWereHandedOut) {
  const std::wstring path = file("a");
  ObjectPtr<IValidFile> kept;
  {
    FoundFilesLazyIterator files(m_strategy, m_validator);
    files.addFoundFile(path.c_str(), 2, m_stop);
    kept = files.next();
  }
  EXPECT_EQ(kept->getPath(), path);
  EXPECT_EQ(kept->addRef(), 2u);
  kept->release();
}

}  // namespace
}  // namespace QV_2_9
