// The three layers of validation.

#include "validation/validator.h"

#include "paku/file.h"
#include "paku/filename.h"

#include "os/path_utils.h"
#include "quiver/search_callbacks.h"
#include "search/lookup_journal.h"
#include "search/search_results.h"
#include "search/search_step.h"
#include "validation/message_keys.h"
#include "validation/message_text.h"

namespace QV_2_9 {
namespace {

using PAKU_3_1::Readability;

Readability readability(const wchar_t* path) {
  return PAKU_3_1::readability(PAKU_3_1::Filename(PAKU_3_1::String(path), 0, false));
}

template <class Message>
validation_result_t reject(IErrorInfoContainer& errorInfo,
                           const ObjectPtr<Message>& message,
                           const wchar_t* key) {
  errorInfo.setErrorCode(ecUnusable);
  const std::wstring text =
      internal::messageText(message, key, [](Message& asked, IMsgContainer& container) {
        asked.formatMessage(container);
      });
  errorInfo.setErrorMessage(text.c_str());
  return vrInvalid;
}

ObjectPtr<IValidatedFile> accepted(const wchar_t* path,
                                   std::int32_t confidenceLevel,
                                   std::uint32_t step) {
  const ObjectPtr<IValidFile> file = new ValidFile(
      toCanonicalAbsolutePath(path, false), confidenceLevel, internal::stepNumber(step));
  return new ValidatedFile(file, nullptr);
}

ObjectPtr<IValidatedFile> rejected(const wchar_t* path,
                                   const Validator::ErrorInfoContainer& errorInfo,
                                   std::uint32_t step) {
  const ObjectPtr<IInvalidFile> file = new InvalidFile(
      path, errorInfo.errorCode(), errorInfo.message().c_str(), internal::stepNumber(step));
  return new ValidatedFile(nullptr, file);
}

}  // namespace

void Validator::ErrorInfoContainer::setErrorCode(std::int32_t code) {
  m_errorCode = code;
}

void Validator::ErrorInfoContainer::setErrorMessage(const wchar_t* text) {
  if (text)
    m_message = text;
}

Validator::ValidatorCallbackDecorator::ValidatorCallbackDecorator(IValidatorCallback* check)
    : m_check(check) {
  const ObjectPtr<IMessageMgr> messages = IMessageMgr::create();
  m_isDirectoryMessage = messages->getFileIsDirectoryMessage();
  m_isNotReadableMessage = messages->getFileIsNotReadableMessage();
  m_doesNotExistMessage = messages->getFileDoesNotExistMessage();
}

validation_result_t Validator::ValidatorCallbackDecorator::validate(
    const wchar_t* path, IErrorInfoContainer& errorInfo) {
  switch (readability(path)) {
    case Readability::kMissing:
      return reject(errorInfo, m_doesNotExistMessage, internal::kFileDoesNotExistKey);
    case Readability::kDirectory:
      return reject(errorInfo, m_isDirectoryMessage, internal::kFileIsDirectoryKey);
    case Readability::kUnreadable:
      return reject(errorInfo, m_isNotReadableMessage, internal::kCantOpenFileKey);
    case Readability::kReadable:
      break;
  }
  return m_check ? m_check->validate(path, errorInfo) : vrUndecided;
}

Validator::Validator(IValidatorCallback* check,
                     IConfidenceLevelPolicyCallback& policy,
                     search_category_t category)
    : m_decorator(check), m_policy(&policy), m_category(category) {}

ObjectPtr<IValidatedFile> Validator::validate(const wchar_t* path) {
  const ObjectPtr<IValidatedFile> verdict = validateInStep(path, kSuggestedResolutionStep);
  if (m_journal)
    m_journal->judged(verdict, kSuggestedResolutionStep, true);
  return verdict;
}

ObjectPtr<IValidatedFile> Validator::validateInStep(const wchar_t* path, std::uint32_t step) {
  ErrorInfoContainer errorInfo;
  switch (m_decorator.validate(path, errorInfo)) {
    case vrValid:
      return accepted(path, 0, step);
    case vrInvalid:
      return rejected(path, errorInfo, step);
    default:
      break;
  }
  // The policy gets all of the step value: it tells it a hit of a recursive scan.
  const bool trusted = m_policy->decideConfidenceLevel(m_category, static_cast<std::int32_t>(step));
  return accepted(path, trusted ? 2 : 1, step);
}

}  // namespace QV_2_9
