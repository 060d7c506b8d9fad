// Texts, byte by byte.

#include "symsrv/text.h"

#include <algorithm>
#include <charconv>

namespace symsrv_1_0::internal {
namespace {

std::string hex(std::uint64_t value, std::size_t digits, const char* alphabet) {
  std::string text;
  for (; value != 0 || text.size() < digits; value >>= 4) text += alphabet[value & 15];
  std::reverse(text.begin(), text.end());
  return text;
}

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

unsigned byteAt(std::string_view text, std::size_t i) {
  return static_cast<unsigned char>(text[i]);
}

/// Returns the length of the character at the front of `text`, 0 when there is none.
std::size_t characterLength(std::string_view text) {
  struct Form {
    unsigned mask, lead;
    std::uint32_t smallest;
  };
  static constexpr Form kForms[] = {
      {0x80, 0x00, 0}, {0xE0, 0xC0, 0x80}, {0xF0, 0xE0, 0x800}, {0xF8, 0xF0, 0x10000}};
  for (std::size_t length = 1; length <= 4; ++length) {
    const Form& form = kForms[length - 1];
    if ((byteAt(text, 0) & form.mask) != form.lead)
      continue;
    if (text.size() < length)
      return 0;
    std::uint32_t value = byteAt(text, 0) & ~form.mask & 0xFF;
    for (std::size_t i = 1; i < length; ++i) {
      if ((byteAt(text, i) & 0xC0) != 0x80)
        return 0;
      value = value << 6 | (byteAt(text, i) & 0x3F);
    }
    const bool isSurrogate = value >= 0xD800 && value < 0xE000;
    return value >= form.smallest && value <= 0x10FFFF && !isSurrogate ? length : 0;
  }
  return 0;
}

}  // namespace

std::string upperHex(std::uint64_t value, std::size_t digits) {
  return hex(value, digits, "0123456789ABCDEF");
}

std::string lowerHex(std::uint64_t value, std::size_t digits) {
  return hex(value, digits, "0123456789abcdef");
}

std::optional<std::uint64_t> decimal(std::string_view text) {
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

std::string lowerHexBytes(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) text += lowerHex(static_cast<unsigned char>(byte), 2);
  return text;
}

std::string toLower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

bool equalIgnoreCase(std::string_view a, std::string_view b) {
  return std::equal(
      a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

bool startsWithIgnoreCase(std::string_view text, std::string_view prefix) {
  return equalIgnoreCase(text.substr(0, prefix.size()), prefix);
}

std::string_view trimmed(std::string_view text) {
  static constexpr std::string_view kBlank(" \t\r\n\0", 5);
  const std::size_t first = text.find_first_not_of(kBlank);
  if (first == std::string_view::npos)
    return {};
  return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    if (length == 0)
      return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string printable(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned value = byteAt(text, i);
    const unsigned next = i + 1 < text.size() ? byteAt(text, i + 1) : 0;
    if (value < 0x20 || value == 0x7F)
      result += "\\x" + lowerHex(value, 2);
    else if (value == 0xC2 && next >= 0x80 && next < 0xA0)
      result += "\\x" + lowerHex(text[++i] & 0xFF, 2);
    else
      result += text[i];
  }
  return result;
}

}  // namespace symsrv_1_0::internal
