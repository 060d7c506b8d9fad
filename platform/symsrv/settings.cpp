// Reads settings.

#include "symsrv/settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "paku/environment.h"
#include "paku/text_encoding.h"

namespace symsrv_1_0::internal {
namespace {

std::string variable(const wchar_t* name) {
  std::string text;
  return PAKU_3_1::encode(PAKU_3_1::environmentValue(name), text) ? text : std::string();
}

/// Reads a number of seconds, with a point in any locale. Returns 0 for what is none.
double secondsIn(const std::string& text) {
  double seconds = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, seconds);
  return result.ec == std::errc() && result.ptr == end && seconds > 0 ? seconds : 0;
}

/// Shortens every limit on time to what the user is ready to wait. No limit becomes 0, which would
/// be none.
void limitTime(Limits& limits, double seconds) {
  constexpr double kMaxSeconds = 7 * 24 * 3600.0;
  const std::chrono::milliseconds time(
      static_cast<std::int64_t>(std::ceil(std::min(seconds, kMaxSeconds) * 1000)));
  limits.total = time;
  limits.connect = std::min(limits.connect, time);
  limits.firstByte = std::min(limits.firstByte, time);
}

}  // namespace

Settings settingsFromEnvironment() {
  Settings settings;
  settings.defaultStore = variable(L"QUIVER_SYMBOL_CACHE");
  if (settings.defaultStore.empty())
    settings.defaultStore = systemDefaultStore();
  settings.caFile = variable(L"QUIVER_SYMBOL_CA");
  settings.looksInLowerCase = !variable(L"QUIVER_SYMBOL_LOWER_CASE").empty();
  if (const double seconds = secondsIn(variable(L"QUIVER_SYMBOL_TIMEOUT")); seconds > 0)
    limitTime(settings.limits, seconds);
  return settings;
}

}  // namespace symsrv_1_0::internal
