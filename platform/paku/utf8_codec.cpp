// One UTF-8 character at a time.

#include "paku/utf8_codec.h"

namespace PAKU_3_1::internal {
namespace {

/// What the first byte of a sequence announces.
struct Sequence {
  std::size_t length;
  std::uint32_t bits;     // of the first byte that belong to the character
  std::uint32_t minimum;  // smaller values have a shorter sequence
};

Sequence announcedBy(unsigned char lead) {
  if (lead < 0x80)
    return {1, lead, 0};
  if (lead >= 0xC0 && lead < 0xE0)
    return {2, lead & 0x1Fu, 0x80};
  if (lead >= 0xE0 && lead < 0xF0)
    return {3, lead & 0x0Fu, 0x800};
  if (lead >= 0xF0 && lead < 0xF8)
    return {4, lead & 0x07u, 0x10000};
  return {0, 0, 0};
}

char continuationByte(std::uint32_t codePoint, int shift) {
  return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
}

}  // namespace

Utf8Step firstCharacter(std::string_view bytes) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const Utf8Step escaped{0xDC00u + byteAt(0), 1};
  const Sequence sequence = announcedBy(byteAt(0));
  if (sequence.length == 0 || sequence.length > bytes.size())
    return escaped;
  std::uint32_t value = sequence.bits;
  for (std::size_t i = 1; i < sequence.length; ++i) {
    if ((byteAt(i) & 0xC0) != 0x80)
      return escaped;
    value = (value << 6) | (byteAt(i) & 0x3Fu);
  }
  const bool isCharacter = value >= sequence.minimum && value <= kMaxCodePoint &&
                           !isHighSurrogate(value) && !isLowSurrogate(value);
  return isCharacter ? Utf8Step{value, sequence.length} : escaped;
}

void appendUtf8(std::string& bytes, std::uint32_t codePoint) {
  if (codePoint < 0x80) {
    bytes += static_cast<char>(codePoint);
    return;
  }
  if (codePoint < 0x800) {
    bytes += static_cast<char>(0xC0 | (codePoint >> 6));
  } else if (codePoint < 0x10000) {
    bytes += static_cast<char>(0xE0 | (codePoint >> 12));
    bytes += continuationByte(codePoint, 6);
  } else {
    bytes += static_cast<char>(0xF0 | (codePoint >> 18));
    bytes += continuationByte(codePoint, 12);
    bytes += continuationByte(codePoint, 6);
  }
  bytes += continuationByte(codePoint, 0);
}

}  // namespace PAKU_3_1::internal
