// Collects one line and hands it to the sink.

#include "vesk/event.h"

#include <string_view>
#include <utility>

#include "vesk/log_info.h"
#include "vesk/sink.h"
#include "vesk/utf8.h"

namespace vesk_1_8::log {

Event::Event(const LogInfo& info, const char* scope, const char* source, int line) noexcept
    : m_channel(info.Option ? info.channel() : nullptr),
      m_scope(scope),
      m_source(source ? source : ""),
      m_line(line) {}

Event::~Event() {
  if (!m_channel)
    return;
  try {
    writeToSink({m_channel, m_scope, m_source, m_line, std::move(m_text)});
  } catch (...) {
    // Tracing must not disturb what it watches.
  }
}

Event& Event::operator<<(const char* text) noexcept {
  if (!m_channel || !text)
    return *this;
  try {
    m_text += text;
  } catch (...) {
    m_channel = nullptr;
  }
  return *this;
}

Event& Event::operator<<(const wchar_t* text) noexcept {
  if (!m_channel || !text)
    return *this;
  try {
    appendUtf8(m_text, text);
  } catch (...) {
    m_channel = nullptr;
  }
  return *this;
}

Event& Event::operator<<(const std::wstring& text) noexcept {
  return *this << text.c_str();
}

}  // namespace vesk_1_8::log
