// Checks of source files by their attributes.

#include "quiver/source_file_validators.h"

#include "os/path_utils.h"
#include "validation/message_keys.h"
#include "validation/message_text.h"

namespace QV_2_9 {
namespace {

// Time and size are 0 for a file that cannot be examined.
internal::FileStatus statusOf(const wchar_t* path) {
  internal::FileStatus status;
  internal::fileStatus(path, status);
  return status;
}

validation_result_t reject(IErrorInfoContainer& errorInfo, const std::wstring& text) {
  errorInfo.setErrorMessage(text.c_str());
  errorInfo.setErrorCode(ecSourceMismatch);
  return vrInvalid;
}

}  // namespace

SourceFileTimeAndSizeMatchValidator::SourceFileTimeAndSizeMatchValidator(
    std::int64_t modificationTime, std::int64_t size)
    : m_modificationTime(modificationTime), m_size(size) {
  const ObjectPtr<IMessageMgr> messages = IMessageMgr::create();
  m_timeMessage = messages->getModificationTimeMismatchMessage();
  m_sizeMessage = messages->getSizeMismatchMessage();
}

validation_result_t SourceFileTimeAndSizeMatchValidator::validate(const wchar_t* path,
                                                                  IErrorInfoContainer& errorInfo) {
  const internal::FileStatus file = statusOf(path);
  if (m_modificationTime != 0 && m_modificationTime != file.modificationTime)
    return rejectForTime(errorInfo);
  if (m_size == 0)
    return m_modificationTime != 0 ? vrValid : vrUndecided;
  return m_size == file.size ? vrValid : rejectForSize(errorInfo);
}

void SourceFileTimeAndSizeMatchValidator::fillTimeMismatchErrorMessage(
    IModificationTimeMismatchMessage& message, IMsgContainer& container) {
  message.formatMessage(container, L"");
}

void SourceFileTimeAndSizeMatchValidator::fillSizeMismatchErrorMessage(
    ISizeMismatchMessage& message, IMsgContainer& container) {
  message.formatMessage(container, L"");
}

validation_result_t SourceFileTimeAndSizeMatchValidator::rejectForTime(
    IErrorInfoContainer& errorInfo) {
  return reject(errorInfo,
                internal::messageText(m_timeMessage,
                                      internal::kModificationTimeOrSizeMismatchKey,
                                      [this](auto& message, auto& out) {
                                        fillTimeMismatchErrorMessage(message, out);
                                      }));
}

validation_result_t SourceFileTimeAndSizeMatchValidator::rejectForSize(
    IErrorInfoContainer& errorInfo) {
  return reject(errorInfo,
                internal::messageText(m_sizeMessage,
                                      internal::kModificationTimeOrSizeMismatchKey,
                                      [this](auto& message, auto& out) {
                                        fillSizeMismatchErrorMessage(message, out);
                                      }));
}

SourceFileUpToDateCheckValidator::SourceFileUpToDateCheckValidator(const wchar_t* referencePath)
    : m_referenceTime(statusOf(referencePath).modificationTime),
      m_message(IMessageMgr::create()->getSourceFileUpToDateMessage()) {}

validation_result_t SourceFileUpToDateCheckValidator::validate(const wchar_t* path,
                                                               IErrorInfoContainer& errorInfo) {
  const internal::FileStatus file = statusOf(path);
  if (m_referenceTime == 0)
    return vrUndecided;
  // Intended: unsigned, so that a time before 1970 counts as very new.
  if (static_cast<std::uint64_t>(m_referenceTime) >=
      static_cast<std::uint64_t>(file.modificationTime))
    return vrUndecided;
  return reject(errorInfo,
                internal::messageText(
                    m_message, internal::kSourceFileUpToDateKey, [this](auto& message, auto& out) {
                      fillUpToDateErrorMessage(message, out);
                    }));
}

void SourceFileUpToDateCheckValidator::fillUpToDateErrorMessage(ISourceFileUpToDateMessage& message,
                                                                IMsgContainer& container) {
  message.formatMessage(container, L"");
}

}  // namespace QV_2_9
