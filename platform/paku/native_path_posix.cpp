// A path as system calls take it.

#include "paku/native_path_posix.h"

#include <climits>

#include "paku/text_encoding.h"

namespace PAKU_3_1::internal {

bool nativePath(std::wstring_view text, std::string& bytes) {
  if (text.size() >= PATH_MAX)  // no character takes less than a byte
    return false;
  if (text.empty() || text.find(L'\0') != std::wstring_view::npos || !encode(text, bytes))
    return false;
  while (bytes.size() > 1 && bytes.back() == '/') bytes.pop_back();
  return true;
}

}  // namespace PAKU_3_1::internal
