// See search_results.h.

#include "search/search_results.h"

#include <utility>

#include "os/path_utils.h"

namespace QV_2_9 {

ValidFile::ValidFile(std::wstring path, std::int32_t confidenceLevel, std::int32_t step)
    : m_path(std::move(path)), m_confidenceLevel(confidenceLevel), m_step(step) {}

const wchar_t* ValidFile::getPath() {
  return m_path.c_str();
}

std::int32_t ValidFile::getConfidenceLevel() {
  return m_confidenceLevel;
}

std::int32_t ValidFile::getStep() {
  return m_step;
}

InvalidFile::InvalidFile(const wchar_t* path,
                         std::int32_t errorCode,
                         const wchar_t* message,
                         std::int32_t step)
    : m_path(toCanonicalAbsolutePath(path, false)),
      m_message(message ? message : L""),
      m_errorCode(errorCode),
      m_step(step) {}

const wchar_t* InvalidFile::getPath() {
  return m_path.c_str();
}

std::int32_t InvalidFile::getErrorCode() {
  return m_errorCode;
}

const wchar_t* InvalidFile::getErrorMessage() {
  return m_message.c_str();
}

std::int32_t InvalidFile::getStep() {
  return m_step;
}

ObjectPtr<IValidFile> InvalidFile::makeValid() {
  return new ValidFile(m_path, 0, m_step);
}

ValidatedFile::ValidatedFile(const ObjectPtr<IValidFile>& validFile,
                             const ObjectPtr<IInvalidFile>& invalidFile)
    : m_validFile(validFile), m_invalidFile(invalidFile) {}

ObjectPtr<IValidFile> ValidatedFile::getValidFile() {
  return m_validFile;
}

ObjectPtr<IInvalidFile> ValidatedFile::getInvalidFile() {
  return m_invalidFile;
}

}  // namespace QV_2_9
