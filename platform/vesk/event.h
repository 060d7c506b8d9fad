// One trace line while it is being put together.

#pragma once

#include <string>

namespace vesk_1_8 {

class LogInfo;
class Trace;

namespace log {

/// Collects texts and writes them as one line when it ends. Texts are joined with nothing in
/// between; narrow ones are taken as UTF-8, null ones write nothing.
///
/// Never throws: text that finds no memory, or a sink that fails, loses the line and nothing else.
class Event final {
 public:
  ~Event();

  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  Event& operator<<(const char* text) noexcept;
  Event& operator<<(const wchar_t* text) noexcept;
  Event& operator<<(const std::wstring& text) noexcept;

 private:
  friend class vesk_1_8::Trace;

  // An event of a channel that is off has no channel name, and writes nothing.
  Event(const LogInfo& info, const char* scope, const char* source, int line) noexcept;

  const char* m_channel;
  const char* m_scope;
  const char* m_source;
  int m_line;
  std::string m_text;
};

}  // namespace log
}  // namespace vesk_1_8
