// Takes the journals of lookups down, one after the other, in the compact form of records.

#pragma once

#include "lookup_record.h"
#include "quiver/search_journal.h"

namespace quiver_tool {

class JournalRecorder final : public QV_2_9::ISearchJournal {
 public:
  /// Does not own the pool.
  explicit JournalRecorder(TextPool& texts) : m_texts(texts) {}

  /// Returns what came since the last call.
  LookupRecord take();

  void onLookupBegan(const QV_2_9::JournalLookup& event) override;
  void onSuggestion(const QV_2_9::JournalSuggestion& event) override;
  void onStepBegan(QV_2_9::search_step_t step) override;
  void onDirectory(const QV_2_9::JournalDirectory& event) override;
  void onCandidate(const QV_2_9::JournalCandidate& event) override;
  void onServer(const QV_2_9::JournalServer& event) override;
  void onStepEnded(const QV_2_9::JournalStepEnd& event) override;
  void onStepNotRun(const QV_2_9::JournalStepNotRun& event) override;
  void onLookupEnded(const QV_2_9::JournalAnswer& event) override;

 private:
  TextPool& m_texts;
  LookupRecord m_record;
};

}  // namespace quiver_tool
