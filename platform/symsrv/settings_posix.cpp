// Caches below XDG_CACHE_HOME, as desktops have agreed.

#include <cstdlib>

#include "symsrv/settings.h"

namespace symsrv_1_0::internal {

std::string systemDefaultStore() {
  const char* cache = std::getenv("XDG_CACHE_HOME");
  if (cache && cache[0] == '/')  // a relative one is to be ignored
    return std::string(cache) + "/quiver/symbols";
  const char* home = std::getenv("HOME");
  if (home && home[0] == '/')
    return std::string(home) + "/.cache/quiver/symbols";
  return {};
}

}  // namespace symsrv_1_0::internal
