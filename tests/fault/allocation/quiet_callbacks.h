// The four search callbacks and a journal, as plain as can be: they allocate nothing.

#pragma once

#include <cstdint>
#include <string>

#include "quiver/ref_count.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_journal.h"
#include "quiver/search_results.h"
#include "quiver/string_container.h"

namespace quiver_test {

using FilePtr = QV_2_9::ObjectPtr<QV_2_9::IValidFile>;

/// Suggests one path.
class SuggestingSearchStarted final : public QV_2_9::ISearchStartedCallback {
 public:
  explicit SuggestingSearchStarted(std::wstring path) : m_path(std::move(path)) {}
  ~SuggestingSearchStarted() override { disconnectHandlers(); }

  bool onBinSearchStarted(const wchar_t*, QV_2_9::IStringContainer& suggestions) override {
    return suggest(suggestions);
  }
  bool onSymSearchStarted(const wchar_t*,
                          const wchar_t*,
                          const wchar_t*,
                          QV_2_9::IStringContainer& suggestions) override {
    return suggest(suggestions);
  }
  bool onSrcSearchStarted(const wchar_t*,
                          const wchar_t*,
                          const wchar_t*,
                          QV_2_9::IStringContainer& suggestions) override {
    return suggest(suggestions);
  }

 private:
  bool suggest(QV_2_9::IStringContainer& suggestions) {
    suggestions.add(m_path.c_str());
    return true;
  }

  std::wstring m_path;
};

/// Walks all files and takes the last. Memory that runs out on the way does not keep it from going
/// on when it `isStubborn`.
class LastFilesFound final : public QV_2_9::IFilesFoundCallback {
 public:
  explicit LastFilesFound(bool isStubborn = false) : m_isStubborn(isStubborn) {}
  ~LastFilesFound() override { disconnectHandlers(); }

  FilePtr onBinFilesFound(const wchar_t*, QV_2_9::IValidFileIterator& files) override {
    return last(files);
  }
  FilePtr onSymFilesFound(const wchar_t*,
                          const wchar_t*,
                          const wchar_t*,
                          QV_2_9::IValidFileIterator& files) override {
    return last(files);
  }
  FilePtr onSrcFilesFound(const wchar_t*,
                          const wchar_t*,
                          const wchar_t*,
                          QV_2_9::IValidFileIterator& files) override {
    return last(files);
  }

  int m_count = 0;  ///< Of the files in the last search.

 private:
  FilePtr next(QV_2_9::IValidFileIterator& files) const;
  FilePtr last(QV_2_9::IValidFileIterator& files);

  const bool m_isStubborn;
};

/// Makes the first rejected file valid.
class ForgivingNoFilesFound final : public QV_2_9::INoFilesFoundCallback {
 public:
  ~ForgivingNoFilesFound() override { disconnectHandlers(); }

  FilePtr onBinNoFilesFound(const wchar_t*,
                            QV_2_9::IValidator&,
                            QV_2_9::IInvalidFileIterator& invalid,
                            QV_2_9::IValidFileIterator&) override {
    return first(invalid);
  }
  FilePtr onSymNoFilesFound(const wchar_t*,
                            const wchar_t*,
                            const wchar_t*,
                            QV_2_9::IValidator&,
                            QV_2_9::IInvalidFileIterator& invalid,
                            QV_2_9::IValidFileIterator&) override {
    return first(invalid);
  }
  FilePtr onSrcNoFilesFound(const wchar_t*,
                            const wchar_t*,
                            const wchar_t*,
                            QV_2_9::IValidator&,
                            QV_2_9::IInvalidFileIterator& invalid,
                            QV_2_9::IValidFileIterator&) override {
    return first(invalid);
  }

 private:
  static FilePtr first(QV_2_9::IInvalidFileIterator& invalid) {
    const QV_2_9::ObjectPtr<QV_2_9::IInvalidFile> file = invalid.next();
    return file ? file->makeValid() : nullptr;
  }
};

class TrustingPolicy final : public QV_2_9::IConfidenceLevelPolicyCallback {
 public:
  ~TrustingPolicy() override { disconnectHandlers(); }
  bool decideConfidenceLevel(QV_2_9::search_category_t, std::int32_t) override { return true; }
};

/// Counts.
class CountingJournal final : public QV_2_9::ISearchJournal {
 public:
  void onLookupBegan(const QV_2_9::JournalLookup&) override { ++m_open; }
  void onSuggestion(const QV_2_9::JournalSuggestion&) override {}
  void onStepBegan(QV_2_9::search_step_t) override { ++m_steps; }
  void onDirectory(const QV_2_9::JournalDirectory&) override {}
  void onCandidate(const QV_2_9::JournalCandidate&) override {}
  void onServer(const QV_2_9::JournalServer&) override {}
  void onStepEnded(const QV_2_9::JournalStepEnd&) override {}
  void onStepNotRun(const QV_2_9::JournalStepNotRun&) override {}
  void onLookupEnded(const QV_2_9::JournalAnswer&) override { --m_open; }

  int m_open = 0;  ///< Lookups that began and have not ended.
  int m_steps = 0;
};

}  // namespace quiver_test
