// Caches in the user's local application data.

#include "paku/environment.h"
#include "paku/text_encoding.h"
#include "symsrv/files.h"
#include "symsrv/settings.h"

namespace symsrv_1_0::internal {

std::string systemDefaultStore() {
  std::string local;
  if (!PAKU_3_1::encode(PAKU_3_1::environmentValue(L"LOCALAPPDATA"), local) ||
      !isAbsolutePath(local))
    return {};
  return local + "\\quiver\\symbols";
}

}  // namespace symsrv_1_0::internal
