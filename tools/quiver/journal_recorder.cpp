#include "journal_recorder.h"

#include <string>
#include <utility>

#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

const wchar_t* remarkOn(QV_2_9::journal_directory_state_t state) {
  switch (state) {
    case QV_2_9::jdSearched:
      return L"";
    case QV_2_9::jdEnded:
      return L"until a file was confirmed";
    case QV_2_9::jdMissing:
      return L"no such directory";
    case QV_2_9::jdUnreadable:
      return L"cannot be read";
    case QV_2_9::jdRepeated:
      return L"searched before";
    case QV_2_9::jdSymbolServer:
      return L"a symbol server";
    case QV_2_9::jdNotSearched:
      break;
  }
  return L"not searched";
}

bool isSearched(QV_2_9::journal_directory_state_t state) {
  return state == QV_2_9::jdSearched || state == QV_2_9::jdEnded;
}

RecordedOutcome outcomeOf(QV_2_9::journal_candidate_outcome_t outcome) {
  switch (outcome) {
    case QV_2_9::jcMissing:
      return kOutcomeMissing;
    case QV_2_9::jcDuplicate:
      return kOutcomeDuplicate;
    case QV_2_9::jcValid:
      return kOutcomeValid;
    case QV_2_9::jcInvalid:
      break;
  }
  return kOutcomeInvalid;
}

std::wstring verdictOn(const QV_2_9::JournalCandidate& candidate) {
  if (candidate.outcome == QV_2_9::jcMissing)
    return L"";
  if (candidate.confidence >= 0)
    return toWide(confidenceWords(candidate.confidence));
  return toWide(reasonWords(candidate.message));
}

std::wstring answerOf(const QV_2_9::JournalServer& server) {
  const wchar_t* words = L"asked";
  switch (server.outcome) {
    case QV_2_9::jsFound:
      words = L"found";
      break;
    case QV_2_9::jsMissing:
      words = L"does not have it";
      break;
    case QV_2_9::jsMismatch:
      words = L"has another file";
      break;
    case QV_2_9::jsFailed:
      words = L"failed";
      break;
    case QV_2_9::jsLeftAlone:
      words = L"not asked";
      break;
    case QV_2_9::jsCanceled:
      words = L"given up";
      break;
  }
  const std::wstring detail = server.detail;
  return detail.empty() ? words : words + (L" (" + detail) + L")";
}

const wchar_t* remarkOn(QV_2_9::journal_idle_t idle) {
  switch (idle) {
    case QV_2_9::jiNotIdle:
      return L"";
    case QV_2_9::jiNoBinary:
      return L"the binary is not known";
    case QV_2_9::jiBareBinary:
      return L"the binary has no directory";
    case QV_2_9::jiNotForCategory:
      return L"not for this kind of file";
    case QV_2_9::jiNoEnvironment:
    case QV_2_9::jiNoDirectories:
      break;
  }
  return L"no place is given for it";
}

const wchar_t* reasonWordsOf(QV_2_9::journal_not_run_t reason) {
  switch (reason) {
    case QV_2_9::jnCanceled:
      return L"the search was canceled";
    case QV_2_9::jnFailed:
      return L"the lookup failed";
    case QV_2_9::jnAnswered:
    case QV_2_9::jnRefused:
      break;
  }
  // The program's callback refuses the first file only to have it answered by the next callback.
  return L"the file was found before";
}

}  // namespace

LookupRecord JournalRecorder::take() {
  return std::exchange(m_record, LookupRecord());
}

void JournalRecorder::onLookupBegan(const QV_2_9::JournalLookup&) {}

void JournalRecorder::onSuggestion(const QV_2_9::JournalSuggestion& event) {
  m_record.addSuggestion(m_texts, event.path);
}

void JournalRecorder::onStepBegan(QV_2_9::search_step_t step) {
  m_record.addStep(step);
}

void JournalRecorder::onDirectory(const QV_2_9::JournalDirectory& event) {
  m_record.addDirectory(m_texts,
                        {event.path,
                         event.isRecursive,
                         isSearched(event.state),
                         event.isFromIndex,
                         event.entries,
                         remarkOn(event.state)});
}

void JournalRecorder::onCandidate(const QV_2_9::JournalCandidate& event) {
  m_record.addCandidate(
      m_texts, event.path, outcomeOf(event.outcome), event.stepValue, verdictOn(event));
}

void JournalRecorder::onServer(const QV_2_9::JournalServer& event) {
  m_record.addServer(m_texts, {event.element, event.identity, answerOf(event), event.bytes});
}

void JournalRecorder::onStepEnded(const QV_2_9::JournalStepEnd& event) {
  m_record.addStepEnd(m_texts, event.step, event.microseconds, remarkOn(event.idle));
}

void JournalRecorder::onStepNotRun(const QV_2_9::JournalStepNotRun& event) {
  m_record.addStepOff(m_texts, event.step, reasonWordsOf(event.reason));
}

// The answer stands with the file; the record says which step or who gave it.
void JournalRecorder::onLookupEnded(const QV_2_9::JournalAnswer& event) {
  m_record.addEnd(m_texts, event.path ? toWide(stepWords(event.step)) : L"");
}

}  // namespace quiver_tool
