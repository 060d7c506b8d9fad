// A POSIX system separates with '/' alone, but the paths it is asked about may come from Windows.

#include "paku/path_style.h"

namespace PAKU_3_1::internal {

PathStyle systemPathStyle() {
  return PathStyle::kPosix;
}

PathStyle defaultPathStyle(std::wstring_view text) {
  return styleOfRecordedPath(text);
}

}  // namespace PAKU_3_1::internal
