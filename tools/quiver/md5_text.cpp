#include "md5_text.h"

#include <algorithm>
#include <cstddef>

#include "text_encoding.h"
#include "usage_error.h"

namespace quiver_tool {
namespace {

constexpr std::size_t kMd5Digits = 32;

bool isHexDigit(wchar_t c) {
  return (c >= L'0' && c <= L'9') || (c >= L'a' && c <= L'f') || (c >= L'A' && c <= L'F');
}

}  // namespace

void checkMd5Text(const std::wstring& text) {
  const auto bad = std::find_if_not(text.begin(), text.end(), isHexDigit);
  if (text.size() == kMd5Digits && bad == text.end())
    return;
  std::string complaint = "--md5: an MD5 is 32 hexadecimal digits; this text has " +
                          std::to_string(text.size()) +
                          (text.size() == 1 ? " character" : " characters");
  if (bad != text.end()) {
    complaint += ", of which the first that is no digit is '" + toBytes(std::wstring(1, *bad)) +
                 "' at position " + std::to_string(bad - text.begin() + 1);
  }
  throw UsageError(complaint);
}

}  // namespace quiver_tool
