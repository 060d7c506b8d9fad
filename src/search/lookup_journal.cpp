// See lookup_journal.h.

#include "search/lookup_journal.h"

namespace QV_2_9::internal {
namespace {

using PAKU_3_1::ScannedDirectory;
using symsrv_1_0::StoreOutcome;

constexpr std::int32_t kNothing = -1;

static_assert(static_cast<int>(StoreOutcome::kFound) == jsFound &&
              static_cast<int>(StoreOutcome::kMissing) == jsMissing &&
              static_cast<int>(StoreOutcome::kMismatch) == jsMismatch &&
              static_cast<int>(StoreOutcome::kFailed) == jsFailed &&
              static_cast<int>(StoreOutcome::kLeftAlone) == jsLeftAlone &&
              static_cast<int>(StoreOutcome::kCanceled) == jsCanceled);

journal_directory_state_t stateOf(const ScannedDirectory& directory) {
  using State = ScannedDirectory::State;
  switch (directory.state) {
    case State::kSearched:
      return jdSearched;
    case State::kEnded:
      return jdEnded;
    case State::kMissing:
      return jdMissing;
    case State::kUnreadable:
      return jdUnreadable;
    case State::kRepeated:
      return jdRepeated;
    case State::kNotSearched:
      break;
  }
  return jdNotSearched;
}

template <class TimePoint>
std::int64_t microsecondsSince(TimePoint start) {
  return std::chrono::duration_cast<std::chrono::microseconds>(TimePoint::clock::now() - start)
      .count();
}

}  // namespace

LookupJournal::LookupJournal(ISearchJournal& journal, bool hasEnvironment)
    : m_journal(journal), m_hasEnvironment(hasEnvironment), m_lookupBegan(Clock::now()) {}

void LookupJournal::began(const JournalLookup& lookup) {
  m_category = lookup.category;
  m_hasBinary = lookup.binary[0] != L'\0';
  m_journal.onLookupBegan(lookup);
}

void LookupJournal::suggested(const wchar_t* path, bool isFromCallback) {
  m_suggester = isFromCallback ? jaSearchStartedCallback : jaSuggestion;
  m_journal.onSuggestion({path, isFromCallback});
}

void LookupJournal::stepBegan(search_step_t step) {
  m_firstStepLeft = step + 1;
  m_isIdle = true;
  m_stepBegan = Clock::now();
  m_journal.onStepBegan(step);
}

void LookupJournal::stepEnded(search_step_t step) {
  const std::int64_t microseconds = microsecondsSince(m_stepBegan);
  m_journal.onStepEnded({step, microseconds, m_isIdle ? idleReason(step) : jiNotIdle});
}

void LookupJournal::stepBroken(search_step_t step) {
  m_isIdle = false;  // who knows what it would have found
  stepEnded(step);
}

journal_idle_t LookupJournal::idleReason(search_step_t step) const {
  if (step == ssAroundBinaryLookup && m_category == scBinaryFiles)
    return jiNotForCategory;
  if (step == ssAroundBinaryLookup)
    return m_hasBinary ? jiBareBinary : jiNoBinary;
  const bool isSystems = step == ssSystemDirs;
  if (isSystems && m_category == scSourceFiles)
    return jiNotForCategory;
  return m_hasEnvironment || isSystems ? jiNoDirectories : jiNoEnvironment;
}

void LookupJournal::tell(const JournalDirectory& directory) {
  m_isIdle = false;
  m_journal.onDirectory(directory);
}

void LookupJournal::tell(const JournalCandidate& candidate) {
  m_isIdle = false;
  m_journal.onCandidate(candidate);
}

void LookupJournal::missing(const wchar_t* path, std::uint32_t stepValue) {
  tell({path, stepValue, jcMissing, kNothing, L"", kNothing});
}

void LookupJournal::judged(const ObjectPtr<IValidatedFile>& verdict,
                           std::uint32_t stepValue,
                           bool isNew) {
  if (!verdict)
    return;
  if (const ObjectPtr<IValidFile> valid = verdict->getValidFile()) {
    noteValidSuggestion(stepValue);
    return tell({valid->getPath(),
                 stepValue,
                 isNew ? jcValid : jcDuplicate,
                 kNothing,
                 L"",
                 valid->getConfidenceLevel()});
  }
  if (const ObjectPtr<IInvalidFile> invalid = verdict->getInvalidFile())
    tell({invalid->getPath(),
          stepValue,
          isNew ? jcInvalid : jcDuplicate,
          invalid->getErrorCode(),
          invalid->getErrorMessage(),
          kNothing});
}

void LookupJournal::noteValidSuggestion(std::uint32_t stepValue) {
  if (stepValue == kSuggestedResolutionStep && m_suggesterOfValid == jaNobody)
    m_suggesterOfValid = m_suggester;
}

void LookupJournal::onDirectory(const ScannedDirectory& directory) {
  tell({directory.path.wcharPtr(),
        directory.depth != 0,
        stateOf(directory),
        directory.isFromIndex,
        static_cast<std::int64_t>(directory.entries)});
}

void LookupJournal::symbolServerDirectory(const wchar_t* directory, bool isRecursive) {
  tell({directory, isRecursive, jdSymbolServer, false, 0});
}

void LookupJournal::onStore(const symsrv_1_0::StoreReport& report) {
  m_isIdle = false;
  m_journal.onServer({report.store,
                      report.place,
                      report.identity,
                      static_cast<journal_server_outcome_t>(report.outcome),
                      report.detail,
                      report.bytes});
}

journal_answerer_t LookupJournal::answererOf(const ObjectPtr<IValidFile>& answer) const {
  if (!answer)
    return jaNobody;
  const bool isSuggestion = answer->getStep() == kSuggestedResolutionStep;
  return m_answerer == jaStep && isSuggestion ? m_suggesterOfValid : m_answerer;
}

void LookupJournal::tellStepsLeft() {
  for (std::int32_t step = m_firstStepLeft; step <= ssLowPrioritySearchDirs; ++step)
    m_journal.onStepNotRun({static_cast<search_step_t>(step), m_reasonAgainstSteps});
}

void LookupJournal::ended(const ObjectPtr<IValidFile>& answer) {
  tellStepsLeft();
  m_journal.onLookupEnded({answer ? answer->getPath() : nullptr,
                           answer ? answer->getStep() : 0,
                           answer ? answer->getConfidenceLevel() : kNothing,
                           answererOf(answer),
                           microsecondsSince(m_lookupBegan)});
}

void LookupJournal::broken() {
  m_reasonAgainstSteps = jnFailed;
  tellStepsLeft();
  m_journal.onLookupEnded({nullptr, 0, kNothing, jaException, microsecondsSince(m_lookupBegan)});
}

}  // namespace QV_2_9::internal
