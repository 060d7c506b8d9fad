// The four search callbacks, recording what they are asked and answering what a test wants.
//
//   auto log = std::make_shared<CallLog>();
//   RecordingSearchStarted started(log);
//   started.answer = [](const Call&, IStringContainer& suggestions) {
//     suggestions.add(L"/tmp/a.dll");
//     return true;
//   };
//   env->setSearchStartedCallback(&started);
//
// Callbacks that share a log show their order among each other. Without one each keeps its own.
// A log may be written by several threads; answers are set before a search runs. Tests that use
// these link the library.

#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "quiver/search_callbacks.h"
#include "quiver/search_results.h"
#include "quiver/string_container.h"
#include "quiver/validation.h"

namespace quiver_test {

enum class CallbackKind { searchStarted, filesFound, noFilesFound, confidenceLevel };

/// What a callback was asked. A null text is recorded as `kNullText`.
struct Call {
  CallbackKind kind = CallbackKind::searchStarted;
  QV_2_9::search_category_t category = QV_2_9::scBinaryFiles;
  std::wstring name;      ///< The file sought; empty for a confidence level.
  std::wstring binary;    ///< Empty for a binary, which is asked about without one.
  std::wstring checksum;  ///< The same.
  std::int32_t step = 0;  ///< Of a confidence level only.

  bool operator==(const Call&) const = default;
};

inline constexpr const wchar_t* kNullText = L"(null)";

/// For test messages.
void PrintTo(const Call& call, std::ostream* out);

class CallLog final {
 public:
  void add(const Call& call);
  /// Returns the calls so far, oldest first.
  std::vector<Call> calls() const;
  void clear();

 private:
  mutable std::mutex m_mutex;
  std::vector<Call> m_calls;
};

/// Lets the search go on, unless told otherwise.
class RecordingSearchStarted final : public QV_2_9::ISearchStartedCallback {
 public:
  explicit RecordingSearchStarted(std::shared_ptr<CallLog> log = std::make_shared<CallLog>());
  ~RecordingSearchStarted() override;

  std::vector<Call> calls() const { return m_log->calls(); }
  std::function<bool(const Call&, QV_2_9::IStringContainer&)> answer;

  bool onBinSearchStarted(const wchar_t* binFile, QV_2_9::IStringContainer& suggestions) override;
  bool onSymSearchStarted(const wchar_t* symFile,
                          const wchar_t* binaryFile,
                          const wchar_t* checksum,
                          QV_2_9::IStringContainer& suggestions) override;
  bool onSrcSearchStarted(const wchar_t* srcFile,
                          const wchar_t* binaryFile,
                          const wchar_t* checksum,
                          QV_2_9::IStringContainer& suggestions) override;

 private:
  bool record(const Call& call, QV_2_9::IStringContainer& suggestions);

  std::shared_ptr<CallLog> m_log;
};

/// Takes the first file, unless told otherwise.
class RecordingFilesFound final : public QV_2_9::IFilesFoundCallback {
 public:
  using File = QV_2_9::ObjectPtr<QV_2_9::IValidFile>;

  explicit RecordingFilesFound(std::shared_ptr<CallLog> log = std::make_shared<CallLog>());
  ~RecordingFilesFound() override;

  std::vector<Call> calls() const { return m_log->calls(); }
  std::function<File(const Call&, QV_2_9::IValidFileIterator&)> answer;

  File onBinFilesFound(const wchar_t* binFile, QV_2_9::IValidFileIterator& files) override;
  File onSymFilesFound(const wchar_t* symFile,
                       const wchar_t* binaryFile,
                       const wchar_t* checksum,
                       QV_2_9::IValidFileIterator& files) override;
  File onSrcFilesFound(const wchar_t* srcFile,
                       const wchar_t* binaryFile,
                       const wchar_t* checksum,
                       QV_2_9::IValidFileIterator& files) override;

 private:
  File record(const Call& call, QV_2_9::IValidFileIterator& files);

  std::shared_ptr<CallLog> m_log;
};

/// Finds nothing, unless told otherwise.
class RecordingNoFilesFound final : public QV_2_9::INoFilesFoundCallback {
 public:
  using File = QV_2_9::ObjectPtr<QV_2_9::IValidFile>;

  explicit RecordingNoFilesFound(std::shared_ptr<CallLog> log = std::make_shared<CallLog>());
  ~RecordingNoFilesFound() override;

  std::vector<Call> calls() const { return m_log->calls(); }
  std::function<File(
      const Call&, QV_2_9::IValidator&, QV_2_9::IInvalidFileIterator&, QV_2_9::IValidFileIterator&)>
      answer;

  File onBinNoFilesFound(const wchar_t* binFile,
                         QV_2_9::IValidator& validator,
                         QV_2_9::IInvalidFileIterator& invalidFiles,
                         QV_2_9::IValidFileIterator& validFiles) override;
  File onSymNoFilesFound(const wchar_t* symFile,
                         const wchar_t* binaryFile,
                         const wchar_t* checksum,
                         QV_2_9::IValidator& validator,
                         QV_2_9::IInvalidFileIterator& invalidFiles,
                         QV_2_9::IValidFileIterator& validFiles) override;
  File onSrcNoFilesFound(const wchar_t* srcFile,
                         const wchar_t* binaryFile,
                         const wchar_t* checksum,
                         QV_2_9::IValidator& validator,
                         QV_2_9::IInvalidFileIterator& invalidFiles,
                         QV_2_9::IValidFileIterator& validFiles) override;

 private:
  File record(const Call& call,
              QV_2_9::IValidator& validator,
              QV_2_9::IInvalidFileIterator& invalidFiles,
              QV_2_9::IValidFileIterator& validFiles);

  std::shared_ptr<CallLog> m_log;
};

/// Answers false (confidence level 1), unless told otherwise.
class RecordingConfidenceLevelPolicy final : public QV_2_9::IConfidenceLevelPolicyCallback {
 public:
  explicit RecordingConfidenceLevelPolicy(
      std::shared_ptr<CallLog> log = std::make_shared<CallLog>());
  ~RecordingConfidenceLevelPolicy() override;

  std::vector<Call> calls() const { return m_log->calls(); }
  std::function<bool(const Call&)> answer;

  bool decideConfidenceLevel(QV_2_9::search_category_t category, std::int32_t step) override;

 private:
  std::shared_ptr<CallLog> m_log;
};

}  // namespace quiver_test
