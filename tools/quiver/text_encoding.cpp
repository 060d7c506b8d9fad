#include "text_encoding.h"

#include <cstddef>

namespace quiver_tool {

std::string toUtf8(std::wstring_view text) {
  using namespace QV_2_9::internal;
  std::string bytes;
  while (!text.empty()) {
    const CodePoint first = firstOfText(text);
    appendUtf8(bytes, isCharacter(first.value) ? first.value : kReplacementCharacter);
    text.remove_prefix(first.length);
  }
  return bytes;
}

std::string escapeControls(std::string_view bytes) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string escaped;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    auto byte = static_cast<unsigned char>(bytes[i]);
    const auto next = static_cast<unsigned char>(i + 1 < bytes.size() ? bytes[i + 1] : 0);
    const bool isTwoBytes = byte == 0xC2 && next >= 0x80 && next < 0xA0;
    if (byte >= 0x20 && byte != 0x7F && !isTwoBytes) {
      escaped += bytes[i];
      continue;
    }
    if (isTwoBytes) {
      byte = next;
      ++i;
    }
    escaped += "\\x";
    escaped += kDigits[byte >> 4];
    escaped += kDigits[byte & 0xF];
  }
  return escaped;
}

}  // namespace quiver_tool
