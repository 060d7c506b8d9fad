// Tells the caller's journal what a lookup does.
//
// Lives on the stack of one lookup that has a journal, and is handed down by pointer to everything
// that has something to tell; in all other lookups the pointer is null and nothing is composed. It
// also keeps what the events need to know of each other.

#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "paku/file_search.h"
#include "symsrv/symsrv_helper.h"

#include "quiver/search_journal.h"

namespace QV_2_9::internal {

class LookupJournal final : public PAKU_3_1::IScanWatcher, public symsrv_1_0::IStoreWatcher {
 public:
  /// `journal` is the caller's; `hasEnvironment` tells whether the search has an environment.
  LookupJournal(ISearchJournal& journal, bool hasEnvironment);

  LookupJournal(const LookupJournal&) = delete;
  LookupJournal& operator=(const LookupJournal&) = delete;

  void began(const JournalLookup& lookup);
  void suggested(const wchar_t* path, bool isFromCallback);
  void stepBegan(search_step_t step);
  void stepEnded(search_step_t step);
  /// An exception leaves the step; it may begin again when a callback catches that.
  void stepBroken(search_step_t step);

  void missing(const wchar_t* path, std::uint32_t stepValue);
  /// `isNew` is false for a duplicate. Nothing without a verdict.
  void judged(const ObjectPtr<IValidatedFile>& verdict, std::uint32_t stepValue, bool isNew);

  void onDirectory(const PAKU_3_1::ScannedDirectory& directory) override;
  void symbolServerDirectory(const wchar_t* directory, bool isRecursive);
  void onStore(const symsrv_1_0::StoreReport& report) override;

  /// Says why the steps that are left do not run.
  void stops(journal_not_run_t reason) { m_reasonAgainstSteps = reason; }
  /// Says who gives the answer. `jaStep` may be a suggestion: whose it was is known here.
  void answers(journal_answerer_t answerer) { m_answerer = answerer; }
  void ended(const ObjectPtr<IValidFile>& answer);
  /// An exception leaves the lookup.
  void broken();

 private:
  using Clock = std::chrono::steady_clock;

  void tell(const JournalDirectory& directory);
  void tell(const JournalCandidate& candidate);
  void tellStepsLeft();
  void noteValidSuggestion(std::uint32_t stepValue);
  journal_idle_t idleReason(search_step_t step) const;
  journal_answerer_t answererOf(const ObjectPtr<IValidFile>& answer) const;

  ISearchJournal& m_journal;
  const bool m_hasEnvironment;
  search_category_t m_category = scAllFiles;
  bool m_hasBinary = false;
  std::int32_t m_firstStepLeft = ssArchiveSearchDirs;
  bool m_isIdle = true;                              // the running step, so far
  journal_answerer_t m_suggester = jaSuggestion;     // of the path that is being tried
  journal_answerer_t m_suggesterOfValid = jaNobody;  // of the first valid one
  journal_answerer_t m_answerer = jaNobody;
  journal_not_run_t m_reasonAgainstSteps = jnAnswered;
  Clock::time_point m_lookupBegan;
  Clock::time_point m_stepBegan;
};

}  // namespace QV_2_9::internal
