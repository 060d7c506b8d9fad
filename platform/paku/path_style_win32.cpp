// Windows reads every path its own way, whatever it looks like.

#include "paku/path_style.h"

namespace PAKU_3_1::internal {

PathStyle systemPathStyle() {
  return PathStyle::kWindows;
}

PathStyle defaultPathStyle(std::wstring_view /*text*/) {
  return PathStyle::kWindows;
}

}  // namespace PAKU_3_1::internal
