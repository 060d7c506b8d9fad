// The files that a search hands out. All are immutable and counted without a lock.

#pragma once

#include <cstdint>
#include <string>

#include "quiver/ref_count.h"
#include "quiver/search_results.h"

namespace QV_2_9 {

class ValidFile final : public RefCountImpl<IValidFile> {
 public:
  /// `path` is canonical already; `step` is a step number.
  ValidFile(std::wstring path, std::int32_t confidenceLevel, std::int32_t step);

  const wchar_t* getPath() override;
  std::int32_t getConfidenceLevel() override;
  std::int32_t getStep() override;

 private:
  const std::wstring m_path;
  const std::int32_t m_confidenceLevel;
  const std::int32_t m_step;
};

class InvalidFile final : public RefCountImpl<IInvalidFile> {
 public:
  /// Keeps the canonical absolute form of `path`. A null path or message counts as empty.
  InvalidFile(const wchar_t* path,
              std::int32_t errorCode,
              const wchar_t* message,
              std::int32_t step);

  const wchar_t* getPath() override;
  std::int32_t getErrorCode() override;
  const wchar_t* getErrorMessage() override;
  std::int32_t getStep() override;
  ObjectPtr<IValidFile> makeValid() override;

 private:
  const std::wstring m_path;
  const std::wstring m_message;
  const std::int32_t m_errorCode;
  const std::int32_t m_step;
};

class ValidatedFile final : public RefCountImpl<IValidatedFile> {
 public:
  /// Exactly one of the two is set.
  ValidatedFile(const ObjectPtr<IValidFile>& validFile, const ObjectPtr<IInvalidFile>& invalidFile);

  ObjectPtr<IValidFile> getValidFile() override;
  ObjectPtr<IInvalidFile> getInvalidFile() override;

 private:
  const ObjectPtr<IValidFile> m_validFile;
  const ObjectPtr<IInvalidFile> m_invalidFile;
};

}  // namespace QV_2_9
