#include "outcome_journal.h"

#include "quiver/search_results.h"
#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

constexpr std::int32_t kSteps = 6;

void addCandidates(const Outcome& outcome,
                   std::int32_t step,
                   TextPool& texts,
                   LookupRecord& record) {
  for (const RejectedFile& file : outcome.rejected) {
    if (file.step == step) {
      const std::wstring reason = toWide(reasonWords(file.message));
      record.addCandidate(texts, file.path, kOutcomeInvalid, step, reason);
    }
  }
  for (const FoundFile& file : outcome.candidates) {
    if (file.step == step) {
      const std::wstring verdict = toWide(confidenceWords(file.confidence));
      record.addCandidate(texts, file.path, kOutcomeValid, step, verdict);
    }
  }
}

// No step runs when a suggested path is taken.
std::int32_t stepsRun(const Outcome& outcome) {
  if (!outcome.found)
    return kSteps;
  return outcome.found->step == QV_2_9::kSuggestedResolutionStep ? 0 : outcome.found->step;
}

}  // namespace

LookupRecord journalOf(const Outcome& outcome, TextPool& texts) {
  LookupRecord record;
  const std::int32_t last = stepsRun(outcome);
  addCandidates(outcome, QV_2_9::kSuggestedResolutionStep, texts, record);
  for (std::int32_t step = 1; step <= kSteps; ++step) {
    if (step > last) {
      record.addStepOff(texts, step, L"the file was found before");
      continue;
    }
    record.addStep(step);
    addCandidates(outcome, step, texts, record);
  }
  record.addEnd(texts, outcome.found ? toWide(stepWords(outcome.found->step)) : L"");
  return record;
}

}  // namespace quiver_tool
