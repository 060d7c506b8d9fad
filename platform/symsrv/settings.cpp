// Reads settings.

#include "symsrv/settings.h"

#include <algorithm>
#include <cstdlib>

#include "paku/environment.h"
#include "paku/text_encoding.h"

namespace symsrv_1_0::internal {
namespace {

std::string variable(const wchar_t* name) {
  std::string text;
  return PAKU_3_1::encode(PAKU_3_1::environmentValue(name), text) ? text : std::string();
}

/// Shortens every limit on time to what the user is ready to wait.
void limitTime(Limits& limits, double seconds) {
  constexpr double kMaxSeconds = 7 * 24 * 3600.0;
  const std::chrono::milliseconds time(
      static_cast<std::int64_t>(std::min(seconds, kMaxSeconds) * 1000));
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
  const double seconds = std::strtod(variable(L"QUIVER_SYMBOL_TIMEOUT").c_str(), nullptr);
  if (seconds > 0)
    limitTime(settings.limits, seconds);
  return settings;
}

}  // namespace symsrv_1_0::internal
