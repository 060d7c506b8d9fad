// Reads a channel's switch from the environment.

#include "vesk/log_info.h"

#include <optional>
#include <utility>

#include "vesk/variable.h"

namespace vesk_1_8 {

LogInfo::LogInfo(const char* channel, const char* variable) : m_channel(channel ? channel : "") {
  std::optional<std::string> value = variable ? variableValue(variable) : std::nullopt;
  if (!value)
    return;
  m_value = *std::move(value);
  switchForTest(true);
}

void LogInfo::switchForTest(bool on) noexcept {
  Option.m_text.store(on ? m_value.c_str() : nullptr, std::memory_order_release);
}

}  // namespace vesk_1_8
