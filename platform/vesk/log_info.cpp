// Reads a channel's switch from the environment.

#include "vesk/log_info.h"

#include <cstdlib>

namespace vesk_1_8 {

LogInfo::LogInfo(const char* channel, const char* variable) : m_channel(channel ? channel : "") {
  const char* value = variable ? std::getenv(variable) : nullptr;
  if (!value)
    return;
  m_value = value;
  switchForTest(true);
}

void LogInfo::switchForTest(bool on) noexcept {
  Option.m_text.store(on ? m_value.c_str() : nullptr, std::memory_order_release);
}

}  // namespace vesk_1_8
