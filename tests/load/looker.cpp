// Lookups, counted and judged.

#include "load/looker.h"

#include <mutex>
#include <shared_mutex>

#include "load/event_counter.h"

namespace quiver_load {

using namespace QV_2_9;

namespace {

/// Counts a download when it is over.
class Progress final : public ISymbolDownloadProgress {
 public:
  Progress(WorkCounts& counts, const RealBinary* binary) : m_counts(counts), m_binary(binary) {}

  void start(std::int32_t) override { m_isStarted = true; }
  void progress(std::int32_t) override {}
  void finish() override {
    if (m_isStarted && m_binary)
      m_counts.add(m_binary->source == SymbolSource::kServer ? Work::kServerDownload
                                                             : Work::kStoreDownload);
    m_isStarted = false;
  }
  bool isCanceled() override { return false; }

 private:
  WorkCounts& m_counts;
  const RealBinary* m_binary;
  bool m_isStarted = false;
};

Work workOf(search_category_t category) {
  if (category == scBinaryFiles)
    return Work::kBinaryLookup;
  return category == scSymbolFiles ? Work::kSymbolLookup : Work::kSourceLookup;
}

}  // namespace

void Looker::lookUp(IFileSearch& search) {
  const SoughtFile& sought = m_files.any(m_random);
  answersOfThisThread() = {};
  m_load.counts.add(workOf(sought.category));
  m_lookups.fetch_add(1, std::memory_order_relaxed);
  try {
    const ObjectPtr<IValidFile> answer = find(search, sought);
    count(answer);
    if (const std::string wrong = wrongIn(answer, sought, answersOfThisThread(), m_load.places);
        !wrong.empty())
      m_load.findings.add(wrong);
  } catch (const CallbackException&) {
    m_load.counts.add(Work::kException);
  }
}

ObjectPtr<IValidFile> Looker::find(IFileSearch& search, const SoughtFile& sought) {
  const wchar_t* const name = sought.recorded.c_str();
  const wchar_t* const binary = sought.binary.c_str();
  Progress progress(m_load.counts, sought.symbols);
  switch (sought.category) {
    case scBinaryFiles:
      return search.findBinFile(name, sought.check, nullptr);
    case scSymbolFiles:
      return search.findSymFile(name, binary, nullptr, sought.check, nullptr, &progress);
    default:
      return search.findSrcFile(name, binary, nullptr, sought.check, nullptr);
  }
}

void Looker::count(const ObjectPtr<IValidFile>& answer) {
  m_load.counts.add(answer ? Work::kFound : Work::kNotFound);
  if (answer && answer->getConfidenceLevel() == 0)
    m_load.counts.add(Work::kConfirmed);
}

void SharedLooker::run() {
  while (!m_load.isOver.load(std::memory_order_relaxed)) {
    ObjectPtr<IFileSearch> search;  // may be the last reference; it goes outside of the gate
    const std::shared_lock guard(m_load.shared.gate());
    search = m_load.shared.search();
    lookUp(*search);
    m_load.counts.add(Work::kSharedSearch);
  }
}

void OwnLooker::run() {
  while (!m_load.isOver.load(std::memory_order_relaxed)) useOneSetup();
}

void OwnLooker::useOneSetup() {
  const ObjectPtr<IEditableEnvironmentInfo> info = IEditableEnvironmentInfo::create();
  info->setOSType(2);
  EventCounter journal(m_load.findings);
  const bool isJournalled = m_random() % 4 == 0;
  SearchSetup setup(m_load.places, m_load.symbols, info, isJournalled ? &journal : nullptr);
  if (isJournalled)
    m_load.counts.add(Work::kJournalledSearch);
  if (m_random() % 4 == 0)
    withOwnCallbacks(setup);
  lookUpSeveralTimes(setup);
}

/// The callbacks go before the environment that refers to them, or are replaced by lasting ones.
void OwnLooker::withOwnCallbacks(SearchSetup& setup) {
  {
    LoadSearchStarted started(m_load.frame());
    LoadFilesFound filesFound(m_load.frame());
    LoadNoFilesFound noFilesFound(m_load.frame());
    LoadPolicy policy(m_load.frame());
    setup.env().setSearchStartedCallback(&started);
    setup.env().setFilesFoundCallback(&filesFound);
    setup.env().setNoFilesFoundCallback(&noFilesFound);
    setup.env().setConfidenceLevelPolicyCallback(&policy);
    lookUpSeveralTimes(setup);
    if (m_random() % 2 == 0)
      setup.env().setFilesFoundCallback(CallbackHolder<IFilesFoundCallback>());
  }
  setup.env().setSearchStartedCallback(&m_lasting.started);
  setup.env().setConfidenceLevelPolicyCallback(&m_lasting.policy);
}

void OwnLooker::lookUpSeveralTimes(SearchSetup& setup) {
  constexpr int kTimes = 24;
  for (int i = 0; i < kTimes && !m_load.isOver.load(std::memory_order_relaxed); ++i) {
    const std::shared_lock guard(m_load.shared.gate());
    lookUp(*setup.search());
    m_load.counts.add(Work::kOwnSearch);
  }
}

}  // namespace quiver_load
