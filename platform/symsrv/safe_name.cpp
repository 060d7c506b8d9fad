// Which names are ordinary.

#include "symsrv/safe_name.h"

#include <algorithm>

#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

constexpr std::size_t kMaxName = 200;  // 255 bytes less the suffix of a temporary file

bool isForbidden(char c) {
  const auto value = static_cast<unsigned char>(c);
  return value < 0x20 || value == 0x7F ||
         std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos;
}

/// Superscript digits count: systems take COM¹ for COM1.
bool isPortNumber(std::string_view text) {
  if (text.size() == 1)
    return text[0] >= '0' && text[0] <= '9';
  return text == "\xC2\xB9" || text == "\xC2\xB2" || text == "\xC2\xB3";
}

bool isDevice(std::string_view name) {
  std::string_view stem = name.substr(0, name.find('.'));
  while (!stem.empty() && stem.back() == ' ') stem.remove_suffix(1);
  for (const std::string_view device : {"con", "prn", "aux", "nul", "conin$", "conout$", "clock$"})
    if (equalIgnoreCase(stem, device))
      return true;
  const bool isPort = startsWithIgnoreCase(stem, "com") || startsWithIgnoreCase(stem, "lpt");
  return isPort && isPortNumber(stem.substr(3));
}

}  // namespace

std::string_view lastComponent(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

bool isSafeComponent(std::string_view name) {
  if (name.empty() || name.size() > kMaxName || std::any_of(name.begin(), name.end(), isForbidden))
    return false;
  if (name.back() == '.' || name.back() == ' ' || name.front() == ' ')
    return false;  // "." and ".." among them
  return isUtf8(name) && !isDevice(name);
}

bool isSafeId(std::string_view id) {
  return !id.empty() && id.size() <= kMaxName && std::all_of(id.begin(), id.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-';
  });
}

}  // namespace symsrv_1_0::internal
