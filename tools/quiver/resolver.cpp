#include "resolver.h"

#include <chrono>

#include "download_progress.h"
#include "interrupt.h"
#include "journal_recorder.h"
#include "lookup_callbacks.h"
#include "quiver/quiver.h"
#include "result_scope.h"
#include "search_scope.h"

namespace quiver_tool {
namespace {

using QV_2_9::IChecksum;
using QV_2_9::IChecksumCalculator;
using QV_2_9::IFileSearch;
using QV_2_9::IPathMapping;
using QV_2_9::IPathMappings;
using QV_2_9::IValidatorCallback;
using Clock = std::chrono::steady_clock;

const std::vector<QV_2_9::search_category_t> kCategories = {
    QV_2_9::scBinaryFiles, QV_2_9::scSymbolFiles, QV_2_9::scSourceFiles};

std::int64_t microsecondsSince(Clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count();
}

// Checks compare the low 32 bits, as a signed number.
std::int64_t asChecked(std::int64_t size) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(size));
}

/// The lookups of one run, over one environment.
class Run final {
 public:
  Run(const ResolveOptions& options, Resolution& resolution, const ResolveWatcher& watcher)
      : m_options(options),
        m_resolution(resolution),
        m_choosing(false),
        m_showing(m_choosing, m_outcome),
        m_scope(options.places.results),
        m_recorder(resolution.texts),
        m_progress(watcher.writeDownloads) {
    m_scope.setSearchDirs(searchDirs(options.places));
    installCallbacks();
    m_search = QV_2_9::createFileSearchWithJournal(
        m_scope.createSearchEnv(archiveDirs(options.places, kCategories),
                                environmentInfo(options.places)),
        options.report ? &m_recorder : nullptr);
  }

  /// Returns false when Ctrl-C stopped the lookup.
  bool resolve(ResolvedFile& file) {
    m_outcome = Outcome();
    m_choosing.forgetChoice();
    const Clock::time_point start = Clock::now();
    const ObjectPtr<IValidFile> answer = askWithCheck(file.recorded);
    if (m_progress.wasInterrupted())
      return false;
    file.microseconds = microsecondsSince(start);
    take(answer, file);
    file.journal = m_recorder.take();
    return true;
  }

  std::vector<UsedMapping> mappings() const {
    std::vector<UsedMapping> mappings;
    for (std::int32_t i = 0; const ObjectPtr<IPathMapping> one = m_mappings->getMapping(i); ++i) {
      mappings.push_back({one->getRecordedPrefix(),
                          one->getLocalPrefix(),
                          one->isLearned(),
                          one->getConfirmationCount()});
    }
    return mappings;
  }

 private:
  // Mappings learn from what the callbacks of a search see, which they pass on to ours.
  void installCallbacks() {
    for (const PathRule& rule : m_options.rules)
      m_mappings->addMapping(rule.from.c_str(), rule.to.c_str());
    m_scope.setCallback(*m_mappings->getSearchStartedCallback());
    if (!m_options.isLearning)
      return m_scope.setCallbacks(m_choosing, m_showing);
    m_mappings->setFilesFoundUserCallback(&m_choosing);
    m_mappings->setNoFilesFoundUserCallback(&m_showing);
    m_scope.setCallbacks(*m_mappings->getFilesFoundCallback(),
                         *m_mappings->getNoFilesFoundCallback());
  }

  void take(const ObjectPtr<IValidFile>& answer, ResolvedFile& file) {
    file.state = answer ? FileState::Found : FileState::NotFound;
    if (!answer) {
      file.rejected = m_outcome.rejected;
      return;
    }
    file.found = m_outcome.found = toFoundFile(*answer);
    if (m_options.places.isArchivingFound)
      file.archived = m_scope.archive(file.found->path, file.recorded.category);
  }

  // By content where that is recorded, else a source by time and size.
  ObjectPtr<IValidFile> askWithCheck(const RecordedFile& file) {
    const bool isTimed = file.modificationTime || file.size;
    if (file.category == QV_2_9::scSourceFiles && !file.md5 && isTimed) {
      QV_2_9::SourceFileTimeAndSizeMatchValidator check(file.modificationTime.value_or(0),
                                                        asChecked(file.size.value_or(0)));
      return ask(file, check);
    }
    ObjectPtr<IChecksum> checksum;
    if (file.md5)
      checksum = m_calculator->createChecksum(QV_2_9::ctMD5, file.md5->c_str());
    QV_2_9::ChecksumValidator check(file.category, checksum);
    return ask(file, check);
  }

  ObjectPtr<IValidFile> ask(const RecordedFile& file, IValidatorCallback& check) {
    const wchar_t* name = file.name.c_str();
    if (file.category == QV_2_9::scBinaryFiles)
      return m_search->findBinFile(name, &check, nullptr);
    const std::wstring binary = binaryOf(file);
    const wchar_t* md5 = file.md5 ? file.md5->c_str() : nullptr;
    if (file.category == QV_2_9::scSymbolFiles)
      return m_search->findSymFile(name, binary.c_str(), md5, &check, nullptr, &m_progress);
    return m_search->findSrcFile(name, binary.c_str(), md5, &check, nullptr);
  }

  // The binary of this machine has an identity to ask servers by, and neighbours.
  std::wstring binaryOf(const RecordedFile& file) const {
    if (file.binary && m_resolution.files[*file.binary].found)
      return m_resolution.files[*file.binary].found->path;
    return file.module;
  }

  const ResolveOptions& m_options;
  Resolution& m_resolution;
  Outcome m_outcome;
  ChoosingCallback m_choosing;
  ShowingCallback m_showing;
  ObjectPtr<IPathMappings> m_mappings = IPathMappings::create();
  ResultScope m_scope;
  JournalRecorder m_recorder;
  DownloadProgress m_progress;
  ObjectPtr<IChecksumCalculator> m_calculator = IChecksumCalculator::create();
  ObjectPtr<IFileSearch> m_search;
};

void resolveAll(const ResolveOptions& options,
                const ResolveWatcher& watcher,
                Resolution& resolution) {
  const InterruptWatch watch;
  Run run(options, resolution, watcher);
  for (std::size_t i = 0; i < resolution.files.size(); ++i) {
    if (watcher.beforeFile)
      watcher.beforeFile(resolution, i);
    resolution.isInterrupted = InterruptWatch::isInterrupted() || !run.resolve(resolution.files[i]);
    if (resolution.isInterrupted)
      break;
  }
  resolution.mappings = run.mappings();
}

}  // namespace

Resolution resolveFiles(const ResolveOptions& options,
                        const std::vector<RecordedFile>& files,
                        const ResolveWatcher& watcher) {
  const Clock::time_point start = Clock::now();
  Resolution resolution;
  resolution.manifest = options.manifest;
  resolution.files.resize(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) resolution.files[i].recorded = files[i];
  resolution.unusable = unusableDirectories(options.places, kCategories);
  for (const PathRule& rule : options.rules) resolution.unusable.note(rule.to);
  resolveAll(options, watcher, resolution);
  resolution.microseconds = microsecondsSince(start);
  return resolution;
}

}  // namespace quiver_tool
