// The journal of one lookup, kept for telling it afterwards.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "quiver/search_journal.h"

namespace quiver_tool {

struct StoryCandidate {
  std::wstring path;
  QV_2_9::journal_candidate_outcome_t outcome = QV_2_9::jcMissing;
  std::int32_t code = -1;
  std::wstring message;
  std::int32_t confidence = -1;
};

struct StoryDirectory {
  std::wstring path;
  bool isRecursive = false;
  QV_2_9::journal_directory_state_t state = QV_2_9::jdSearched;
  bool isFromIndex = false;
  std::int64_t entries = 0;
};

struct StoryServer {
  std::wstring element;
  std::wstring place;
  std::wstring identity;
  QV_2_9::journal_server_outcome_t outcome = QV_2_9::jsMissing;
  std::wstring detail;
  std::int64_t bytes = 0;
};

/// A place that was looked at, with the candidates that came from it.
struct StoryPlace {
  enum class Kind { kDirectory, kServer, kPaths };
  Kind kind = Kind::kPaths;
  StoryDirectory directory;  ///< Of a directory.
  StoryServer server;        ///< Of a server.
  std::vector<StoryCandidate> candidates;
};

struct StoryStep {
  std::int32_t step = 0;
  bool hasRun = false;
  std::int64_t microseconds = 0;
  QV_2_9::journal_idle_t idle = QV_2_9::jiNotIdle;
  QV_2_9::journal_not_run_t whyNot = QV_2_9::jnAnswered;
  std::vector<StoryPlace> places;
};

/// Serves one lookup.
class Story final : public QV_2_9::ISearchJournal {
 public:
  /// Before the first step and after the last one.
  const std::vector<StoryCandidate>& suggestions() const { return m_suggestions; }
  const std::vector<StoryStep>& steps() const { return m_steps; }
  const std::wstring& nameInDirectories() const { return m_nameInDirectories; }
  std::int64_t microseconds() const { return m_microseconds; }

  void onLookupBegan(const QV_2_9::JournalLookup& event) override;
  void onSuggestion(const QV_2_9::JournalSuggestion&) override {}
  void onStepBegan(QV_2_9::search_step_t step) override;
  void onDirectory(const QV_2_9::JournalDirectory& event) override;
  void onCandidate(const QV_2_9::JournalCandidate& event) override;
  void onServer(const QV_2_9::JournalServer& event) override;
  void onStepEnded(const QV_2_9::JournalStepEnd& event) override;
  void onStepNotRun(const QV_2_9::JournalStepNotRun& event) override;
  void onLookupEnded(const QV_2_9::JournalAnswer& event) override;

 private:
  void endPlace(StoryPlace place);

  std::wstring m_nameInDirectories;
  std::vector<StoryCandidate> m_suggestions;
  std::vector<StoryCandidate> m_candidates;  // of the place that is being looked at
  std::vector<StoryStep> m_steps;
  bool m_isInStep = false;
  std::int64_t m_microseconds = 0;
};

}  // namespace quiver_tool
