// Candidates come before the directory that yielded them and are gathered until then. What no
// directory claims by the next server or the end of the step was tried as a path.

#include "explain_story.h"

#include <utility>

namespace quiver_tool {

void Story::onLookupBegan(const QV_2_9::JournalLookup& event) {
  m_nameInDirectories = event.nameInDirectories;
}

void Story::onStepBegan(QV_2_9::search_step_t step) {
  StoryStep begun;
  begun.step = step;
  begun.hasRun = true;
  m_steps.push_back(std::move(begun));
  m_isInStep = true;
}

void Story::endPlace(StoryPlace place) {
  place.candidates = std::exchange(m_candidates, {});
  m_steps.back().places.push_back(std::move(place));
}

void Story::onDirectory(const QV_2_9::JournalDirectory& event) {
  StoryPlace place;
  place.kind = StoryPlace::Kind::kDirectory;
  place.directory = {event.path, event.isRecursive, event.state, event.isFromIndex, event.entries};
  endPlace(std::move(place));
}

void Story::onServer(const QV_2_9::JournalServer& event) {
  if (!m_candidates.empty())
    endPlace({});
  StoryPlace place;
  place.kind = StoryPlace::Kind::kServer;
  place.server = {
      event.element, event.place, event.identity, event.outcome, event.detail, event.bytes};
  endPlace(std::move(place));
}

void Story::onCandidate(const QV_2_9::JournalCandidate& event) {
  std::vector<StoryCandidate>& where = m_isInStep ? m_candidates : m_suggestions;
  where.push_back({event.path, event.outcome, event.errorCode, event.message, event.confidence});
}

void Story::onStepEnded(const QV_2_9::JournalStepEnd& event) {
  if (!m_candidates.empty())
    endPlace({});
  m_steps.back().microseconds = event.microseconds;
  m_steps.back().idle = event.idle;
  m_isInStep = false;
}

void Story::onStepNotRun(const QV_2_9::JournalStepNotRun& event) {
  StoryStep step;
  step.step = event.step;
  step.whyNot = event.reason;
  m_steps.push_back(std::move(step));
}

void Story::onLookupEnded(const QV_2_9::JournalAnswer& event) {
  m_microseconds = event.microseconds;
}

}  // namespace quiver_tool
