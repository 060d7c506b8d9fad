// UTF-8 to and from a sequence of code units of either width, such that no byte is lost.
//
// A byte that is not part of valid UTF-8 becomes one unit U+DC80 to U+DCFF, and goes back to the
// byte it was. Decoding and encoding again therefore gives the same bytes, whatever they are. The
// units may be UTF-16 or UTF-32; a surrogate pair is one character in either.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace PAKU_3_1::internal {

constexpr std::uint32_t kMaxCodePoint = 0x10FFFF;

constexpr bool isHighSurrogate(std::uint32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool isLowSurrogate(std::uint32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}
constexpr bool isEscapedByte(std::uint32_t unit) {
  return unit >= 0xDC80 && unit <= 0xDCFF;
}

/// One character taken from the front of a text, and how many bytes or units it took.
struct Utf8Step {
  std::uint32_t value;
  std::size_t length;
};

/// Returns the character at the front of `bytes`, or its first byte as an escape.
Utf8Step firstCharacter(std::string_view bytes);

void appendUtf8(std::string& bytes, std::uint32_t codePoint);

template <class Unit>
void appendUnits(std::basic_string<Unit>& text, std::uint32_t codePoint) {
  if (sizeof(Unit) == 2 && codePoint > 0xFFFF) {
    text += static_cast<Unit>(0xD800 + ((codePoint - 0x10000) >> 10));
    text += static_cast<Unit>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
  } else {
    text += static_cast<Unit>(codePoint);
  }
}

template <class Unit>
std::basic_string<Unit> decodeUtf8(std::string_view bytes) {
  std::size_t plain = 0;  // most texts are nothing else
  while (plain < bytes.size() && static_cast<unsigned char>(bytes[plain]) < 0x80) ++plain;
  std::basic_string<Unit> text(bytes.begin(), bytes.begin() + plain);
  text.reserve(bytes.size());
  bytes.remove_prefix(plain);
  while (!bytes.empty()) {
    const Utf8Step step = firstCharacter(bytes);
    appendUnits(text, step.value);
    bytes.remove_prefix(step.length);
  }
  return text;
}

/// Returns false, with `bytes` unspecified, for a text that no bytes stand for: a surrogate that is
/// neither half of a pair nor an escaped byte, or a value above U+10FFFF.
template <class Unit>
bool encodeUtf8(std::basic_string_view<Unit> text, std::string& bytes) {
  const auto unitAt = [&](std::size_t i) {
    return static_cast<std::uint32_t>(static_cast<std::make_unsigned_t<Unit>>(text[i]));
  };
  bytes.resize(text.size());
  std::size_t plain = 0;  // most texts are nothing else
  for (; plain < text.size() && unitAt(plain) < 0x80; ++plain)
    bytes[plain] = static_cast<char>(text[plain]);
  bytes.resize(plain);
  for (std::size_t i = plain; i < text.size(); ++i) {
    const std::uint32_t unit = unitAt(i);
    const bool isPair =
        isHighSurrogate(unit) && i + 1 < text.size() && isLowSurrogate(unitAt(i + 1));
    if (isPair)
      appendUtf8(bytes, 0x10000 + ((unit - 0xD800) << 10) + (unitAt(++i) - 0xDC00));
    else if (isEscapedByte(unit))
      bytes += static_cast<char>(unit - 0xDC00);
    else if (isHighSurrogate(unit) || isLowSurrogate(unit) || unit > kMaxCodePoint)
      return false;
    else
      appendUtf8(bytes, unit);
  }
  return true;
}

}  // namespace PAKU_3_1::internal
