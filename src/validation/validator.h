// Judges one candidate: the state of the file, then the caller's check, then the confidence-level
// policy.
//
// A validator lives on the stack of one search and on its thread. It refers to the caller's check
// and to the policy; both outlive it.

#pragma once

#include <cstdint>
#include <string>

#include "quiver/messages.h"
#include "quiver/object.h"
#include "quiver/search_dirs.h"
#include "quiver/validation.h"
#include "search/file_search_strategy.h"

namespace QV_2_9 {

class IConfidenceLevelPolicyCallback;

namespace internal {
class LookupJournal;
}

class Validator final : public IValidatorInternal {
 public:
  /// `check` may be null. The messages registered now serve for the life of the validator.
  Validator(IValidatorCallback* check,
            IConfidenceLevelPolicyCallback& policy,
            search_category_t category);

  ObjectPtr<IValidatedFile> validate(const wchar_t* path) override;
  ObjectPtr<IValidatedFile> validateInStep(const wchar_t* path, std::uint32_t step) override;

  /// From now on `journal` hears of what callbacks have validated. Not owned; null for nobody.
  void setJournal(internal::LookupJournal* journal) { m_journal = journal; }

  /// What one candidate is rejected with.
  class ErrorInfoContainer final : public IErrorInfoContainer {
   public:
    void setErrorCode(std::int32_t code) override;
    void setErrorMessage(const wchar_t* text) override;

    std::int32_t errorCode() const { return m_errorCode; }
    const std::wstring& message() const { return m_message; }

   private:
    std::wstring m_message;
    std::int32_t m_errorCode = ecNotSet;
  };

  /// Puts what must hold for every candidate in front of the caller's check: it exists, is not a
  /// directory, and can be read.
  class ValidatorCallbackDecorator final : public IValidatorCallback {
   public:
    explicit ValidatorCallbackDecorator(IValidatorCallback* check);

    validation_result_t validate(const wchar_t* path, IErrorInfoContainer& errorInfo) override;

   private:
    IValidatorCallback* m_check;
    ObjectPtr<IFileIsDirectoryMessage> m_isDirectoryMessage;
    ObjectPtr<IFileIsNotReadableMessage> m_isNotReadableMessage;
    ObjectPtr<IFileDoesNotExistMessage> m_doesNotExistMessage;
  };

 private:
  ValidatorCallbackDecorator m_decorator;
  IConfidenceLevelPolicyCallback* m_policy;
  search_category_t m_category;
  internal::LookupJournal* m_journal = nullptr;
};

}  // namespace QV_2_9
