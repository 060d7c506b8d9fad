// The check that compares a candidate's checksum with the recorded one.

#include "quiver/checksum.h"
#include "validation/message_keys.h"
#include "validation/message_text.h"

namespace QV_2_9 {

ChecksumValidator::ChecksumValidator(std::int32_t category, const ObjectPtr<IChecksum>& expected)
    : m_calculator(IChecksumCalculator::create()), m_category(category), m_expected(expected) {
  const ObjectPtr<IMessageMgr> messages = IMessageMgr::create();
  m_binMessage = messages->getBinChecksumMismatchMessage();
  m_symMessage = messages->getSymChecksumMismatchMessage();
  m_srcMessage = messages->getSrcChecksumMismatchMessage();
}

validation_result_t ChecksumValidator::validate(const wchar_t* path,
                                                IErrorInfoContainer& errorInfo) {
  if (!m_expected)
    return vrUndecided;
  const ObjectPtr<IChecksum> computed = m_calculator->calculate(path, m_expected->getType());
  if (!computed)
    return vrUndecided;
  if (computed->isEqual(*m_expected))
    return vrValid;
  fillChecksumErrorInfo(errorInfo);
  return vrInvalid;
}

void ChecksumValidator::fillErrorMessageForBinFile(IBinChecksumMismatchMessage& message,
                                                   IMsgContainer& container) {
  message.formatMessage(container, L"");
}

void ChecksumValidator::fillErrorMessageForSymFile(ISymChecksumMismatchMessage& message,
                                                   IMsgContainer& container) {
  message.formatMessage(container, L"");
}

void ChecksumValidator::fillErrorMessageForSrcFile(ISrcChecksumMismatchMessage& message,
                                                   IMsgContainer& container) {
  message.formatMessage(container, L"");
}

void ChecksumValidator::fillChecksumErrorInfo(IErrorInfoContainer& errorInfo) {
  using internal::messageText;
  std::wstring text = internal::kChecksumMismatchKey;
  switch (m_category) {
    case scBinaryFiles:
      text = messageText(
          m_binMessage, internal::kChecksumMismatchKey, [this](auto& message, auto& out) {
            fillErrorMessageForBinFile(message, out);
          });
      errorInfo.setErrorCode(ecUnusable);
      break;
    case scSymbolFiles:
      text = messageText(
          m_symMessage, internal::kChecksumMismatchKey, [this](auto& message, auto& out) {
            fillErrorMessageForSymFile(message, out);
          });
      errorInfo.setErrorCode(ecUnusable);
      break;
    case scSourceFiles:
      text = messageText(
          m_srcMessage, internal::kChecksumMismatchKey, [this](auto& message, auto& out) {
            fillErrorMessageForSrcFile(message, out);
          });
      // Intended: a viewer may still show a source file that has changed.
      errorInfo.setErrorCode(ecSourceMismatch);
      break;
    default:  // Intended: neither message nor code, the code stays `ecNotSet`.
      break;
  }
  errorInfo.setErrorMessage(text.c_str());
}

}  // namespace QV_2_9
