// Matchers for found files and rejected candidates.

#include "support/matchers.h"

#include <utility>

namespace quiver_test {
namespace {

using QV_2_9::IInvalidFile;
using QV_2_9::IValidFile;
using QV_2_9::ObjectPtr;

std::wstring text(const wchar_t* value) {
  return value ? value : L"(null)";
}

// Returns whether the values agree, and says so when not.
template <class Value>
bool same(const char* part,
          const Value& actual,
          const Value& expected,
          testing::MatchResultListener& listener) {
  if (actual == expected)
    return true;
  listener << "; its " << part << " is " << testing::PrintToString(actual);
  return false;
}

class ValidFileMatcher final {
 public:
  using is_gtest_matcher = void;

  ValidFileMatcher(std::wstring path, std::int32_t confidence, std::int32_t step)
      : m_path(std::move(path)), m_confidence(confidence), m_step(step) {}

  bool MatchAndExplain(const ObjectPtr<IValidFile>& file,
                       testing::MatchResultListener* listener) const {
    if (!file) {
      *listener << "which is null";
      return false;
    }
    const std::wstring path = text(file->getPath());
    *listener << "which is the file " << testing::PrintToString(path);
    const bool paths = same("path", path, m_path, *listener);
    const bool levels =
        same("confidence level", file->getConfidenceLevel(), m_confidence, *listener);
    const bool steps = same("step", file->getStep(), m_step, *listener);
    return paths && levels && steps;
  }

  void DescribeTo(std::ostream* out) const {
    *out << "is the file " << testing::PrintToString(m_path) << " with confidence level "
         << m_confidence << " from step " << m_step;
  }
  void DescribeNegationTo(std::ostream* out) const {
    *out << "is not: ";
    DescribeTo(out);
  }

 private:
  std::wstring m_path;
  std::int32_t m_confidence;
  std::int32_t m_step;
};

class InvalidFileMatcher final {
 public:
  using is_gtest_matcher = void;

  InvalidFileMatcher(std::int32_t code, std::wstring message)
      : m_code(code), m_message(std::move(message)) {}

  bool MatchAndExplain(const ObjectPtr<IInvalidFile>& file,
                       testing::MatchResultListener* listener) const {
    if (!file) {
      *listener << "which is null";
      return false;
    }
    *listener << "which is the rejected " << testing::PrintToString(text(file->getPath()));
    const bool codes = same("error code", file->getErrorCode(), m_code, *listener);
    const bool messages = same("message", text(file->getErrorMessage()), m_message, *listener);
    return codes && messages;
  }

  void DescribeTo(std::ostream* out) const {
    *out << "was rejected with error code " << m_code << " and message "
         << testing::PrintToString(m_message);
  }
  void DescribeNegationTo(std::ostream* out) const {
    *out << "is not: ";
    DescribeTo(out);
  }

 private:
  std::int32_t m_code;
  std::wstring m_message;
};

}  // namespace

testing::Matcher<const ObjectPtr<IValidFile>&> IsValidFile(const std::wstring& path,
                                                           std::int32_t confidence,
                                                           std::int32_t step) {
  return ValidFileMatcher(path, confidence, step);
}

testing::Matcher<const ObjectPtr<IInvalidFile>&> IsInvalidFile(std::int32_t code,
                                                               const std::wstring& message) {
  return InvalidFileMatcher(code, message);
}

}  // namespace quiver_test
