// Message objects and an error container that write down what is asked of them. For tests.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "quiver/messages.h"
#include "quiver/ref_count.h"
#include "quiver/validation.h"

namespace quiver_test {

/// Writes each call as "code 0" or "text %Key", in order.
class ErrorInfoRecorder final : public QV_2_9::IErrorInfoContainer {
 public:
  void setErrorCode(std::int32_t code) override {
    m_calls.push_back(L"code " + std::to_wstring(code));
  }
  void setErrorMessage(const wchar_t* text) override {
    m_calls.push_back(std::wstring(L"text ") + text);
  }

  const std::vector<std::wstring>& calls() const { return m_calls; }

 private:
  std::vector<std::wstring> m_calls;
};

/// A message object of a file-state kind. Without a text it writes nothing.
template <class Message>
class StateMessage final : public QV_2_9::RefCountImpl<Message> {
 public:
  explicit StateMessage(std::optional<std::wstring> text = std::nullopt) : m_text(text) {}

  void formatMessage(QV_2_9::IMsgContainer& container) override {
    ++m_asked;
    if (m_text)
      container.setMessage(m_text->c_str());
  }

  int asked() const { return m_asked; }

 private:
  const std::optional<std::wstring> m_text;
  int m_asked = 0;
};

/// A message object of a kind with a detail text, which it keeps. Without a text it writes nothing.
template <class Message>
class ContentMessage final : public QV_2_9::RefCountImpl<Message> {
 public:
  explicit ContentMessage(std::optional<std::wstring> text = std::nullopt) : m_text(text) {}

  void formatMessage(QV_2_9::IMsgContainer& container, const wchar_t* detail) override {
    m_details.emplace_back(detail);
    if (m_text)
      container.setMessage(m_text->c_str());
  }

  /// One element per call.
  const std::vector<std::wstring>& details() const { return m_details; }

 private:
  const std::optional<std::wstring> m_text;
  std::vector<std::wstring> m_details;
};

}  // namespace quiver_test
