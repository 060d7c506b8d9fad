// A journal that only counts: every step that begins ends, and so does every lookup.

#pragma once

#include "load/findings.h"
#include "quiver/search_journal.h"

namespace quiver_load {

/// For the lookups of one thread.
class EventCounter final : public QV_2_9::ISearchJournal {
 public:
  explicit EventCounter(Findings& findings) : m_findings(findings) {}

  void onLookupBegan(const QV_2_9::JournalLookup&) override { expect(m_lookups++ == 0); }
  void onSuggestion(const QV_2_9::JournalSuggestion&) override { expect(m_lookups == 1); }
  void onStepBegan(QV_2_9::search_step_t) override { expect(m_steps++ == 0); }
  void onDirectory(const QV_2_9::JournalDirectory&) override { expect(m_steps == 1); }
  void onCandidate(const QV_2_9::JournalCandidate&) override { expect(m_lookups == 1); }
  void onServer(const QV_2_9::JournalServer&) override { expect(m_steps == 1); }
  void onStepEnded(const QV_2_9::JournalStepEnd&) override { expect(--m_steps == 0); }
  void onStepNotRun(const QV_2_9::JournalStepNotRun&) override { expect(m_steps == 0); }
  void onLookupEnded(const QV_2_9::JournalAnswer&) override { expect(--m_lookups == 0); }

 private:
  void expect(bool isRight) {
    if (!isRight)
      m_findings.add("the events of a journal are out of order");
  }

  Findings& m_findings;
  int m_lookups = 0;
  int m_steps = 0;
};

}  // namespace quiver_load
