// Tracing of one function: a scope that carries the function's name, and lines written from it.
//
//   Trace trace(channel);
//   trace.init("ns::Class::function");
//   if (channel.Option)
//     trace.start("folder\\file", 120) << "Looking at " << path;
//
// A scope by itself writes nothing. Scopes belong to one thread; channels and sinks to all.

#pragma once

#include "vesk/event.h"
#include "vesk/log_info.h"

namespace vesk_1_8 {

class Trace final {
 public:
  explicit Trace(LogInfo& info) noexcept : m_info(info) {}

  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  /// Names the scope. The text is kept by pointer and must outlive the scope.
  void init(const char* scope) noexcept { m_scope = scope ? scope : ""; }

  /// Begins a line; it is written when the event ends, at the latest at the end of the statement.
  /// Nothing is written while the channel is off.
  log::Event start(const char* source, int line) noexcept {
    return log::Event(m_info, m_scope, source, line);
  }

 private:
  LogInfo& m_info;
  const char* m_scope = "";
};

}  // namespace vesk_1_8
