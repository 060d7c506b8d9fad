// Tests of the trace that a lookup writes: scope, source, line and text of every line, for each
// road through a search, and silence while tracing is off.

#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "vesk/trace_capture.h"

#include "core/trace.h"
#include "quiver/file_search.h"
#include "quiver/ref_count.h"
#include "search/test_doubles.h"
#include "support/callbacks.h"
#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

using internal::ScriptedRoutines;
using quiver_test::Call;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::RecordingSearchStarted;

struct Line {
  std::string scope;
  int line;
  std::string text;
  bool operator==(const Line&) const = default;
};

void PrintTo(const Line& line, std::ostream* out) {
  *out << line.scope << ':' << line.line << ": " << line.text;
}

using Lines = std::vector<Line>;

constexpr const char* kConstructor = "QV_2_9::FileSearch::FileSearch";
constexpr const char* kFindSym = "QV_2_9::FileSearch::findSymFile";
constexpr const char* kFindSrc = "QV_2_9::FileSearch::findSrcFile";
constexpr const char* kFindFile = "QV_2_9::FileSearch::findFile";
constexpr const char* kNext = "QV_2_9::FoundFilesLazyIterator::next";

const Line kNoSuggestions{
    kFindFile,
    931,
    "Suggested resolutions after callback: suggestedResolutions: [StringContainer: m_list = ]"};
const Line kNothingInSteps{kNext, 1196, "Nothing found"};
const Line kSearchingA{"QV_2_9::FileSearch::findBinFile", 1047, "Searching bin file:a.dll"};

std::string narrow(const std::wstring& text) {
  return {text.begin(), text.end()};
}

class FileSearchTrace : public testing::Test {
 protected:
  FileSearchTrace() {
    m_env->setSearchDirs(m_dirs);
    m_search = IFileSearch::create(m_env);
  }

  /// Runs `search` with tracing on and returns what it wrote.
  template <class Search>
  Lines traced(Search search) {
    vesk_1_8::TraceCapture capture(internal::traceChannel());
    search();
    Lines lines;
    for (const vesk_1_8::Record& record : capture.records()) {
      EXPECT_EQ(record.channel, "quiver");
      EXPECT_EQ(record.source, "vcs\\quiver\\src\\qv_search");
      lines.push_back({record.scope, record.line, record.text});
    }
    return lines;
  }
  Lines tracedBin(const wchar_t* suggestion = nullptr) {
    return traced([&] { m_search->findBinFile(L"a.dll", nullptr, suggestion); });
  }
  /// Makes a.dll a find of step 2 and returns its path.
  std::string makeFound() {
    const std::wstring path = m_tree.addFile("high/a.dll");
    m_dirs->addSearchDir(scBinaryFiles, m_tree.path("high").c_str(), false, true);
    return narrow(path);
  }
  static Line found(const std::string& path, const std::string& step) {
    return {kNext, 1165, "Found file: " + path + " in step: " + step};
  }

  quiver_test::TempTree m_tree;
  ScriptedRoutines m_routines;
  ObjectPtr<IEditableSearchDirContainer> m_dirs = IEditableSearchDirContainer::create();
  ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
  ObjectPtr<IFileSearch> m_search;
};

TEST_F(FileSearchTrace, DumpsTheEnvironmentPerCategory) {
  m_dirs->addSearchDir(scSymbolFiles, L"C:\\a", true, true);
  m_dirs->addSearchDir(scAllFiles, L"D:\\b", false, false);
  EXPECT_EQ(traced([&] { IFileSearch::create(m_env); }),
            (Lines{{kConstructor,
                    1024,
                    "Search environment: m_pSearchEnv(scBinaryFiles) = [ISearchEnv: searchDirs = "
                    "], m_pSearchEnv(scSymbolFiles) = [ISearchEnv: searchDirs = C:\\a (Recursive,  "
                    "HighPriority), ], m_pSearchEnv(scSourceFiles) = [ISearchEnv: searchDirs = ], "
                    "m_pSearchEnv(scAllFiles) = [ISearchEnv: searchDirs = D:\\b ( ), ]"}}));
}

TEST_F(FileSearchTrace, DumpsAMissingEnvironment) {
  EXPECT_EQ(
      traced([] { IFileSearch::create(nullptr); }),
      (Lines{{kConstructor,
              1024,
              "Search environment: m_pSearchEnv(scBinaryFiles) = [ISearchEnv: searchDirs = NULL "
              "pointer], m_pSearchEnv(scSymbolFiles) = [ISearchEnv: searchDirs = NULL pointer], "
              "m_pSearchEnv(scSourceFiles) = [ISearchEnv: searchDirs = NULL pointer], "
              "m_pSearchEnv(scAllFiles) = [ISearchEnv: searchDirs = NULL pointer]"}}));
}

TEST_F(FileSearchTrace, IsSilentForAnEmptyName) {
  EXPECT_EQ(traced([&] {
              m_search->findBinFile(L"", nullptr, nullptr);
              m_search->findSymFile(nullptr, L"b", L"c", nullptr, nullptr, nullptr);
              m_search->findSrcFile(L"", L"b", L"c", nullptr, nullptr);
            }),
            Lines{});
}

TEST_F(FileSearchTrace, NamesAllThreeTextsOfASymbolSearch) {
  const Lines lines =
      traced([&] { m_search->findSymFile(L"a.pdb", L"a.exe", L"12", nullptr, nullptr, nullptr); });
  EXPECT_EQ(lines.front(),
            (Line{kFindSym, 1065, "Searching sym file:a.pdb, binary file:a.exe, checksum:12"}));
}

TEST_F(FileSearchTrace, NamesAllThreeTextsOfASourceSearch) {
  const Lines lines =
      traced([&] { m_search->findSrcFile(L"a.c", L"a.exe", L"12", nullptr, nullptr); });
  EXPECT_EQ(lines.front(),
            (Line{kFindSrc, 1085, "Searching src file:a.c, binary file:a.exe, checksum:12"}));
}

TEST_F(FileSearchTrace, WritesNothingForNullTexts) {
  const Lines lines =
      traced([&] { m_search->findSymFile(L"a.pdb", nullptr, nullptr, nullptr, nullptr, nullptr); });
  EXPECT_EQ(lines.front(),
            (Line{kFindSym, 1065, "Searching sym file:a.pdb, binary file:, checksum:"}));
}

TEST_F(FileSearchTrace, ShowsTheRawNameWhereCallbacksSeeTheMappedOne) {
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  m_env->setEnvironmentInfo(info);
  m_routines.map = [](const std::wstring& name) { return L"mapped-" + name; };
  RecordingNoFilesFound none;
  m_env->setNoFilesFoundCallback(&none);
  EXPECT_EQ(tracedBin().front(), kSearchingA);
  EXPECT_EQ(none.calls().at(0).name, L"mapped-a.dll");
}

TEST_F(FileSearchTrace, FoundWithoutCallbacks) {
  const std::string path = makeFound();
  EXPECT_EQ(
      tracedBin(),
      (Lines{kSearchingA,
             kNoSuggestions,
             found(path, "ssHighPrioritySearchDirs"),
             {kFindFile, 956, "Returning the first found, no filesFoundCallback established"}}));
}

TEST_F(FileSearchTrace, NothingFoundWithoutCallbacks) {
  EXPECT_EQ(
      tracedBin(),
      (Lines{kSearchingA,
             kNoSuggestions,
             kNothingInSteps,
             {kFindFile, 986, "Returning the NULL result, no noFilesFoundCallback established"}}));
}

TEST_F(FileSearchTrace, ASuggestionCountsAsFoundInAnUnknownStep) {
  const std::wstring path = m_tree.addFile("s/a.dll");
  EXPECT_EQ(
      tracedBin(path.c_str()),
      (Lines{kSearchingA,
             {kFindFile,
              931,
              "Suggested resolutions after callback: suggestedResolutions: "
              "[StringContainer: m_list = " +
                  narrow(path) + ", ]"},
             found(narrow(path), "Internal error: unknown search step"),
             {kFindFile, 956, "Returning the first found, no filesFoundCallback established"}}));
}

TEST_F(FileSearchTrace, AnswerOfTheFilesFoundCallback) {
  const std::string path = makeFound();
  RecordingFilesFound callback;
  m_env->setFilesFoundCallback(&callback);
  EXPECT_EQ(
      tracedBin(),
      (Lines{kSearchingA,
             kNoSuggestions,
             found(path, "ssHighPrioritySearchDirs"),
             found(path, "ssHighPrioritySearchDirs"),
             {kFindFile, 975, "Returning the result = " + path + " after pFilesFoundCallback"}}));
}

TEST_F(FileSearchTrace, AFilesFoundCallbackThatDeclines) {
  const std::string path = makeFound();
  RecordingFilesFound callback;
  callback.answer = [](const Call&, IValidFileIterator& files) {
    while (files.next()) {
    }
    return ObjectPtr<IValidFile>();
  };
  m_env->setFilesFoundCallback(&callback);
  EXPECT_EQ(
      tracedBin(),
      (Lines{kSearchingA,
             kNoSuggestions,
             found(path, "ssHighPrioritySearchDirs"),
             found(path, "ssHighPrioritySearchDirs"),
             kNothingInSteps,
             {kFindFile, 986, "Returning the NULL result, no noFilesFoundCallback established"}}));
}

TEST_F(FileSearchTrace, NamesTheLatestStepForFilesHandedOutAgain) {
  const std::string path = makeFound();
  RecordingFilesFound callback;
  callback.answer = [](const Call&, IValidFileIterator& files) {
    while (files.next()) {
    }
    files.reset();
    return files.next();
  };
  m_env->setFilesFoundCallback(&callback);
  const Lines lines = tracedBin();
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_EQ(lines[5], found(path, "ssLowPrioritySearchDirs"));
}

TEST_F(FileSearchTrace, NothingFromTheNoFilesFoundCallback) {
  RecordingNoFilesFound callback;
  m_env->setNoFilesFoundCallback(&callback);
  EXPECT_EQ(tracedBin(),
            (Lines{kSearchingA,
                   kNoSuggestions,
                   kNothingInSteps,
                   {kFindFile, 1010, "Nothing found after pNoFilesFoundCallback"}}));
}

TEST_F(FileSearchTrace, AnswerOfTheNoFilesFoundCallback) {
  const std::wstring path = m_tree.addFile("picked/a.dll");
  RecordingNoFilesFound callback;
  callback.answer = [&](const Call&, IValidator& validator, auto&&...) {
    return validator.validate(path.c_str())->getValidFile();
  };
  m_env->setNoFilesFoundCallback(&callback);
  EXPECT_EQ(tracedBin().back(),
            (Line{kFindFile,
                  1006,
                  "Returning the result = " + narrow(path) + " after pNoFilesFoundCallback"}));
}

TEST_F(FileSearchTrace, ACallbackMayReturnAFileWithoutAPath) {
  class Pathless final : public RefCountImpl<IValidFile> {
    const wchar_t* getPath() override { return nullptr; }
    std::int32_t getConfidenceLevel() override { return 0; }
    std::int32_t getStep() override { return 7; }
  };
  RecordingNoFilesFound callback;
  callback.answer = [](auto&&...) { return ObjectPtr<IValidFile>(new Pathless); };
  m_env->setNoFilesFoundCallback(&callback);
  EXPECT_EQ(tracedBin().back(),
            (Line{kFindFile, 1006, "Returning the result =  after pNoFilesFoundCallback"}));
}

TEST_F(FileSearchTrace, ACancelledSearch) {
  makeFound();
  RecordingSearchStarted callback;
  callback.answer = [](const Call&, IStringContainer& suggestions) {
    suggestions.add(L"/none");
    return false;
  };
  m_env->setSearchStartedCallback(&callback);
  EXPECT_EQ(
      tracedBin(),
      (Lines{kSearchingA,
             {kFindFile,
              931,
              "Suggested resolutions after callback: suggestedResolutions: "
              "[StringContainer: m_list = /none, ]"},
             {kFindFile, 986, "Returning the NULL result, no noFilesFoundCallback established"}}));
}

/// An environment whose callbacks vanish between the two looks at them: the first look of a search
/// is the second one here.
template <class Callback>
class VanishingEnv final : public RefCountImpl<ISearchEnv> {
 public:
  VanishingEnv(const ObjectPtr<ISearchEnv>& env, Callback& callback, int lookToVanishAt)
      : m_env(env), m_callback(callback), m_look(lookToVanishAt) {}

  ObjectPtr<ISearchDirIterator> getSearchDirs(search_category_t category) override {
    return m_env->getSearchDirs(category);
  }
  ObjectPtr<ISearchDirIterator> getArchiveSearchDirs(search_category_t category) override {
    return m_env->getArchiveSearchDirs(category);
  }
  CallbackHolder<ISearchStartedCallback>& getSearchStartedCallback() override {
    return m_env->getSearchStartedCallback();
  }
  CallbackHolder<IFilesFoundCallback>& getFilesFoundCallback() override {
    return look<IFilesFoundCallback>(m_env->getFilesFoundCallback());
  }
  CallbackHolder<INoFilesFoundCallback>& getNoFilesFoundCallback() override {
    return look<INoFilesFoundCallback>(m_env->getNoFilesFoundCallback());
  }
  CallbackHolder<IConfidenceLevelPolicyCallback>& getConfidenceLevelPolicyCallback() override {
    return m_env->getConfidenceLevelPolicyCallback();
  }
  ObjectPtr<IEnvironmentInfo> getEnvironmentInfo() override { return m_env->getEnvironmentInfo(); }

 private:
  template <class Interface>
  CallbackHolder<Interface>& look(CallbackHolder<Interface>& holder) {
    if constexpr (std::is_base_of_v<Interface, Callback>) {
      if (--m_look == 0)
        m_callback.disconnectHandlers();
    }
    return holder;
  }

  ObjectPtr<ISearchEnv> m_env;
  Callback& m_callback;
  int m_look;
};

TEST_F(FileSearchTrace, AFilesFoundCallbackThatVanishesBeforeItsLockIsHeld) {
  const std::string path = makeFound();
  RecordingFilesFound callback;
  m_env->setFilesFoundCallback(&callback);
  m_search = IFileSearch::create(new VanishingEnv<RecordingFilesFound>(m_env, callback, 2));
  EXPECT_EQ(
      tracedBin(),
      (Lines{kSearchingA,
             kNoSuggestions,
             found(path, "ssHighPrioritySearchDirs"),
             {kFindFile, 965, "Returning the first found, no pFilesFoundCallback established"}}));
  EXPECT_TRUE(callback.calls().empty());
}

TEST_F(FileSearchTrace, ANoFilesFoundCallbackThatVanishesBeforeItsLockIsHeld) {
  RecordingNoFilesFound callback;
  m_env->setNoFilesFoundCallback(&callback);
  m_search = IFileSearch::create(new VanishingEnv<RecordingNoFilesFound>(m_env, callback, 2));
  EXPECT_EQ(tracedBin(),
            (Lines{kSearchingA,
                   kNoSuggestions,
                   kNothingInSteps,
                   {kFindFile, 1016, "Nothing found, returning"}}));
  EXPECT_TRUE(callback.calls().empty());
}

TEST_F(FileSearchTrace, AnswersTheSameOnAndOff) {
  const std::string path = makeFound();
  std::wstring on;
  traced([&] { on = m_search->findBinFile(L"a.dll", nullptr, nullptr)->getPath(); });
  const vesk_1_8::TraceSilence silence(internal::traceChannel());
  EXPECT_EQ(m_search->findBinFile(L"a.dll", nullptr, nullptr)->getPath(), on);
  EXPECT_EQ(narrow(on), path);
}

}  // namespace
}  // namespace QV_2_9
