// Recording callbacks: each operation turns its arguments into a `Call` and asks the test.

#include "support/callbacks.h"

#include <ostream>
#include <utility>

#include <gtest/gtest.h>

namespace quiver_test {
namespace {

using QV_2_9::IInvalidFileIterator;
using QV_2_9::IStringContainer;
using QV_2_9::IValidator;
using QV_2_9::IValidFile;
using QV_2_9::IValidFileIterator;
using QV_2_9::ObjectPtr;
using QV_2_9::scBinaryFiles;
using QV_2_9::scSourceFiles;
using QV_2_9::scSymbolFiles;
using QV_2_9::search_category_t;

std::wstring text(const wchar_t* value) {
  return value ? value : kNullText;
}

Call binCall(CallbackKind kind, const wchar_t* name) {
  return {kind, scBinaryFiles, text(name), L"", L"", 0};
}

Call fileCall(CallbackKind kind,
              search_category_t category,
              const wchar_t* name,
              const wchar_t* binary,
              const wchar_t* checksum) {
  return {kind, category, text(name), text(binary), text(checksum), 0};
}

const char* kindName(CallbackKind kind) {
  switch (kind) {
    case CallbackKind::searchStarted:
      return "searchStarted";
    case CallbackKind::filesFound:
      return "filesFound";
    case CallbackKind::noFilesFound:
      return "noFilesFound";
    case CallbackKind::confidenceLevel:
      return "confidenceLevel";
  }
  return "unknown";
}

}  // namespace

void PrintTo(const Call& call, std::ostream* out) {
  *out << kindName(call.kind) << "(category " << call.category << ", name "
       << testing::PrintToString(call.name) << ", binary " << testing::PrintToString(call.binary)
       << ", checksum " << testing::PrintToString(call.checksum) << ", step " << call.step << ")";
}

void CallLog::add(const Call& call) {
  const std::lock_guard guard(m_mutex);
  m_calls.push_back(call);
}

std::vector<Call> CallLog::calls() const {
  const std::lock_guard guard(m_mutex);
  return m_calls;
}

void CallLog::clear() {
  const std::lock_guard guard(m_mutex);
  m_calls.clear();
}

RecordingSearchStarted::RecordingSearchStarted(std::shared_ptr<CallLog> log)
    : m_log(std::move(log)) {}

RecordingSearchStarted::~RecordingSearchStarted() {
  disconnectHandlers();
}

bool RecordingSearchStarted::record(const Call& call, IStringContainer& suggestions) {
  m_log->add(call);
  return answer ? answer(call, suggestions) : true;
}

bool RecordingSearchStarted::onBinSearchStarted(const wchar_t* binFile,
                                                IStringContainer& suggestions) {
  return record(binCall(CallbackKind::searchStarted, binFile), suggestions);
}

bool RecordingSearchStarted::onSymSearchStarted(const wchar_t* symFile,
                                                const wchar_t* binaryFile,
                                                const wchar_t* checksum,
                                                IStringContainer& suggestions) {
  return record(fileCall(CallbackKind::searchStarted, scSymbolFiles, symFile, binaryFile, checksum),
                suggestions);
}

bool RecordingSearchStarted::onSrcSearchStarted(const wchar_t* srcFile,
                                                const wchar_t* binaryFile,
                                                const wchar_t* checksum,
                                                IStringContainer& suggestions) {
  return record(fileCall(CallbackKind::searchStarted, scSourceFiles, srcFile, binaryFile, checksum),
                suggestions);
}

RecordingFilesFound::RecordingFilesFound(std::shared_ptr<CallLog> log) : m_log(std::move(log)) {}

RecordingFilesFound::~RecordingFilesFound() {
  disconnectHandlers();
}

ObjectPtr<IValidFile> RecordingFilesFound::record(const Call& call, IValidFileIterator& files) {
  m_log->add(call);
  return answer ? answer(call, files) : files.next();
}

ObjectPtr<IValidFile> RecordingFilesFound::onBinFilesFound(const wchar_t* binFile,
                                                           IValidFileIterator& files) {
  return record(binCall(CallbackKind::filesFound, binFile), files);
}

ObjectPtr<IValidFile> RecordingFilesFound::onSymFilesFound(const wchar_t* symFile,
                                                           const wchar_t* binaryFile,
                                                           const wchar_t* checksum,
                                                           IValidFileIterator& files) {
  return record(fileCall(CallbackKind::filesFound, scSymbolFiles, symFile, binaryFile, checksum),
                files);
}

ObjectPtr<IValidFile> RecordingFilesFound::onSrcFilesFound(const wchar_t* srcFile,
                                                           const wchar_t* binaryFile,
                                                           const wchar_t* checksum,
                                                           IValidFileIterator& files) {
  return record(fileCall(CallbackKind::filesFound, scSourceFiles, srcFile, binaryFile, checksum),
                files);
}

RecordingNoFilesFound::RecordingNoFilesFound(std::shared_ptr<CallLog> log)
    : m_log(std::move(log)) {}

RecordingNoFilesFound::~RecordingNoFilesFound() {
  disconnectHandlers();
}

ObjectPtr<IValidFile> RecordingNoFilesFound::record(const Call& call,
                                                    IValidator& validator,
                                                    IInvalidFileIterator& invalidFiles,
                                                    IValidFileIterator& validFiles) {
  m_log->add(call);
  return answer ? answer(call, validator, invalidFiles, validFiles) : ObjectPtr<IValidFile>();
}

ObjectPtr<IValidFile> RecordingNoFilesFound::onBinNoFilesFound(const wchar_t* binFile,
                                                               IValidator& validator,
                                                               IInvalidFileIterator& invalidFiles,
                                                               IValidFileIterator& validFiles) {
  return record(binCall(CallbackKind::noFilesFound, binFile), validator, invalidFiles, validFiles);
}

ObjectPtr<IValidFile> RecordingNoFilesFound::onSymNoFilesFound(const wchar_t* symFile,
                                                               const wchar_t* binaryFile,
                                                               const wchar_t* checksum,
                                                               IValidator& validator,
                                                               IInvalidFileIterator& invalidFiles,
                                                               IValidFileIterator& validFiles) {
  return record(fileCall(CallbackKind::noFilesFound, scSymbolFiles, symFile, binaryFile, checksum),
                validator,
                invalidFiles,
                validFiles);
}

ObjectPtr<IValidFile> RecordingNoFilesFound::onSrcNoFilesFound(const wchar_t* srcFile,
                                                               const wchar_t* binaryFile,
                                                               const wchar_t* checksum,
                                                               IValidator& validator,
                                                               IInvalidFileIterator& invalidFiles,
                                                               IValidFileIterator& validFiles) {
  return record(fileCall(CallbackKind::noFilesFound, scSourceFiles, srcFile, binaryFile, checksum),
                validator,
                invalidFiles,
                validFiles);
}

RecordingConfidenceLevelPolicy::RecordingConfidenceLevelPolicy(std::shared_ptr<CallLog> log)
    : m_log(std::move(log)) {}

RecordingConfidenceLevelPolicy::~RecordingConfidenceLevelPolicy() {
  disconnectHandlers();
}

bool RecordingConfidenceLevelPolicy::decideConfidenceLevel(search_category_t category,
                                                           std::int32_t step) {
  const Call call{CallbackKind::confidenceLevel, category, L"", L"", L"", step};
  m_log->add(call);
  return answer ? answer(call) : false;
}

}  // namespace quiver_test
