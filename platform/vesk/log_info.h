// A trace channel and the environment variable that switches it on.
//
// Channels are static objects: built when the module is loaded, alive until it is unloaded. The
// variable is read once, then; later changes of the environment are not seen.

#pragma once

#include <atomic>
#include <string>

namespace vesk_1_8 {

/// The state of a channel, read as a text: null while the channel is off. Any thread may read it.
class Switch final {
 public:
  Switch() = default;
  Switch(const Switch&) = delete;
  Switch& operator=(const Switch&) = delete;

  operator const char*() const noexcept { return m_text.load(std::memory_order_acquire); }

 private:
  friend class LogInfo;
  std::atomic<const char*> m_text{nullptr};
};

class LogInfo final {
 public:
  /// `channel` is the name that stands in every line. Setting `variable`, to any value, the empty
  /// one included, turns the channel on.
  LogInfo(const char* channel, const char* variable);

  LogInfo(const LogInfo&) = delete;
  LogInfo& operator=(const LogInfo&) = delete;

  /// The channel's name; valid while the channel lives.
  const char* channel() const noexcept { return m_channel.c_str(); }

  /// Turns the channel on or off whatever the environment says. For tests.
  void switchForTest(bool on) noexcept;

  /// The value of the variable while the channel is on, null while it is off.
  Switch Option;

 private:
  std::string m_channel;
  std::string m_value;
};

}  // namespace vesk_1_8
