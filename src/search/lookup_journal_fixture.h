// Lookups whose journal is written down, one line per event. For tests.

#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "paku/index_settings.h"

#include "quiver/search_env.h"
#include "search/lookup_journal.h"
#include "search/test_doubles.h"
#include "support/temp_tree.h"

namespace QV_2_9 {

using Events = std::vector<std::wstring>;

/// Writes each event down as one line. How many entries of a directory alone were read differs from
/// system to system and is left out. Times are checked to be times, and left out.
class Notebook final : public ISearchJournal {
 public:
  explicit Notebook(std::wstring root) : m_root(std::move(root)) {}

  Events events;

  void onLookupBegan(const JournalLookup& event) override {
    add(L"began " + std::to_wstring(event.category) + L" " + event.name + L" in directories " +
        event.nameInDirectories + L" of " + event.binary + L" with " + event.checksum);
  }
  void onSuggestion(const JournalSuggestion& event) override {
    add(std::wstring(event.isFromCallback ? L"callback" : L"caller") + L" suggests " +
        below(event.path));
  }
  void onStepBegan(search_step_t step) override { add(L"step " + std::to_wstring(step)); }
  void onDirectory(const JournalDirectory& event) override {
    static const wchar_t* const kStates[] = {
        L"searched", L"ended", L"missing", L"unreadable", L"repeated", L"not searched", L"server"};
    add(std::wstring(event.isRecursive ? L"tree " : L"directory ") + below(event.path) + L" " +
        kStates[event.state] +
        (event.isRecursive ? L" " + std::to_wstring(event.entries) : std::wstring()) +
        (event.isFromIndex ? L" from index" : L""));
  }
  void onCandidate(const JournalCandidate& event) override {
    static const wchar_t* const kOutcomes[] = {L"missing", L"duplicate", L"invalid", L"valid"};
    std::wstring line = L"candidate " + below(event.path) + L" step " +
                        std::to_wstring(event.stepValue) + L" " + kOutcomes[event.outcome];
    if (event.errorCode != -1)
      line += L" " + std::to_wstring(event.errorCode) + L" " + event.message;
    if (event.confidence != -1)
      line += L" confidence " + std::to_wstring(event.confidence);
    add(line);
  }
  void onServer(const JournalServer& event) override {
    add(std::wstring(L"server ") + event.element + L" " + event.place + L" " + event.identity +
        L" " + std::to_wstring(event.outcome) + L" " + event.detail + L" " +
        std::to_wstring(event.bytes));
  }
  void onStepEnded(const JournalStepEnd& event) override {
    EXPECT_GE(event.microseconds, 0);
    add(L"end of " + std::to_wstring(event.step) +
        (event.idle ? L" idle " + std::to_wstring(event.idle) : L""));
  }
  void onStepNotRun(const JournalStepNotRun& event) override {
    add(L"not " + std::to_wstring(event.step) + L" for " + std::to_wstring(event.reason));
  }
  void onLookupEnded(const JournalAnswer& event) override {
    EXPECT_GE(event.microseconds, 0);
    add(std::wstring(L"answer ") + (event.path ? below(event.path) : L"none") + L" step " +
        std::to_wstring(event.step) + L" confidence " + std::to_wstring(event.confidence) +
        L" by " + std::to_wstring(event.answerer));
  }

 private:
  void add(const std::wstring& line) { events.push_back(line); }

  /// Paths of the test's tree are shown from its root, with slashes.
  std::wstring below(const std::wstring& path) const {
    if (!path.starts_with(m_root))
      return path;
    std::wstring rest = path.substr(m_root.size() + 1);
    for (wchar_t& c : rest)
      if (c == L'\\')
        c = L'/';
    return rest;
  }

  const std::wstring m_root;
};

/// Answers by the name of the directory above the file, unless it is to throw.
class CheckByDirectory final : public IValidatorCallback {
 public:
  bool m_throws = false;

  validation_result_t validate(const wchar_t* path, IErrorInfoContainer& error) override {
    if (m_throws)
      throw std::runtime_error("enough");
    const std::wstring text = path;
    if (text.find(L"good") != std::wstring::npos)
      return vrValid;
    if (text.find(L"odd") == std::wstring::npos)
      return vrUndecided;
    if (text.find(L"mismatch") != std::wstring::npos)
      error.setErrorCode(ecSourceMismatch);
    error.setErrorMessage(L"%Odd");
    return vrInvalid;
  }
};

/// Searches in a tree of the test's own; nothing is indexed unless a test says so.
class LookupJournalTest : public testing::Test {
 protected:
  LookupJournalTest() {
    useIndex(PAKU_3_1::internal::IndexUse::kNever);
    m_env->setSearchDirs(m_dirs);
  }
  ~LookupJournalTest() override { PAKU_3_1::internal::setIndexSettings(m_former); }

  void useIndex(PAKU_3_1::internal::IndexUse use) const {
    PAKU_3_1::internal::setIndexSettings({use, m_former.maxBytes});
  }

  Events findSrc(const std::wstring& name, const wchar_t* suggestion = nullptr) {
    m_notebook.events.clear();
    m_search->findSrcFile(name.c_str(), m_binary.c_str(), L"c0ffee", &m_check, suggestion);
    return m_notebook.events;
  }
  Events findSym(const std::wstring& name) {
    m_notebook.events.clear();
    m_search->findSymFile(name.c_str(), m_binary.c_str(), L"", &m_check, nullptr, nullptr);
    return m_notebook.events;
  }
  Events findBin(const std::wstring& name) {
    m_notebook.events.clear();
    m_search->findBinFile(name.c_str(), &m_check, nullptr);
    return m_notebook.events;
  }
  void addDir(const std::string& name, bool recursive, bool high) {
    m_dirs->addSearchDir(scAllFiles, m_tree.path(name).c_str(), recursive, high);
  }
  std::wstring began(const std::wstring& name) const {
    return L"began 3 " + name + L" in directories " + name + L" of " + m_binary + L" with c0ffee";
  }

  const PAKU_3_1::internal::IndexSettings m_former = PAKU_3_1::internal::indexSettings();
  quiver_test::TempTree m_tree;
  internal::ScriptedRoutines m_routines;
  CheckByDirectory m_check;
  std::wstring m_binary;
  ObjectPtr<IEditableSearchDirContainer> m_dirs = IEditableSearchDirContainer::create();
  ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
  Notebook m_notebook{m_tree.path("x").substr(0, m_tree.path("x").size() - 2)};
  ObjectPtr<IFileSearch> m_search = createFileSearchWithJournal(m_env, &m_notebook);
};

}  // namespace QV_2_9
