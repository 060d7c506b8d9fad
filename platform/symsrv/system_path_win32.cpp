// Paths as Windows takes them.

#include "symsrv/system_path_win32.h"

#include <algorithm>

#include "paku/text_encoding.h"

namespace symsrv_1_0::internal {
namespace {

constexpr std::size_t kLong = 240;  // the system's limit for folders, less a margin

}  // namespace

std::wstring systemPath(const std::string& path) {
  if (path.find('\0') != std::string::npos)
    return {};
  std::wstring text = PAKU_3_1::decode(path);
  std::replace(text.begin(), text.end(), L'/', L'\\');
  if (text.size() < kLong || text.compare(0, 4, L"\\\\?\\") == 0)
    return text;
  if (text.compare(0, 2, L"\\\\") == 0)
    return L"\\\\?\\UNC" + text.substr(1);
  return text.size() > 2 && text[1] == L':' ? L"\\\\?\\" + text : text;
}

}  // namespace symsrv_1_0::internal
