// Wide text as UTF-8, written here because the standard library's conversion depends on the locale.

#include "vesk/utf8.h"

#include <cstddef>
#include <cstdint>

namespace vesk_1_8 {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool isHighSurrogate(std::uint32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(std::uint32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::uint32_t unitAt(std::wstring_view text, std::size_t at) {
  return at < text.size() ? static_cast<std::uint32_t>(text[at]) : 0;
}

// Returns the character that begins at `at`, and moves `at` behind it.
std::uint32_t nextCharacter(std::wstring_view text, std::size_t& at) {
  const std::uint32_t unit = unitAt(text, at++);
  if (isHighSurrogate(unit) && isLowSurrogate(unitAt(text, at)))
    return 0x10000 + ((unit - 0xD800) << 10) + (unitAt(text, at++) - 0xDC00);
  if (isHighSurrogate(unit) || isLowSurrogate(unit) || unit > 0x10FFFF)
    return kReplacement;
  return unit;
}

void appendCharacter(std::string& out, std::uint32_t character) {
  if (character < 0x80) {
    out += static_cast<char>(character);
    return;
  }
  const int tailLength = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  constexpr std::uint32_t kLeads[] = {0, 0xC0, 0xE0, 0xF0};
  out += static_cast<char>(kLeads[tailLength] | (character >> (6 * tailLength)));
  for (int shift = 6 * (tailLength - 1); shift >= 0; shift -= 6)
    out += static_cast<char>(0x80 | ((character >> shift) & 0x3F));
}

}  // namespace

void appendUtf8(std::string& out, std::wstring_view text) {
  for (std::size_t at = 0; at < text.size();) appendCharacter(out, nextCharacter(text, at));
}

}  // namespace vesk_1_8
