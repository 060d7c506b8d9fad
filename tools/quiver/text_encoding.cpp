// UTF-8 by hand: the conversions of the standard library depend on the locale and cannot keep
// undecodable bytes.

#include "text_encoding.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace quiver_tool {
namespace {

// Names are UTF-16 here, and half of a surrogate pair may stand alone in them.
constexpr bool kKeepsHalves = sizeof(wchar_t) == 2;

constexpr char32_t kEscapedByteBase = 0xDC00;
constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCodePoint = 0x10FFFF;

struct CodePoint {
  char32_t value = 0;
  std::size_t length = 1;
};

bool isHighSurrogate(char32_t value) {
  return value >= 0xD800 && value <= 0xDBFF;
}

bool isLowSurrogate(char32_t value) {
  return value >= 0xDC00 && value <= 0xDFFF;
}

bool isEscapedByte(char32_t value) {
  return !kKeepsHalves && value >= 0xDC80 && value <= 0xDCFF;
}

bool isCharacter(char32_t value) {
  return value <= kLastCodePoint && !isHighSurrogate(value) && !isLowSurrogate(value);
}

bool canBeWritten(char32_t value) {
  return isCharacter(value) || (kKeepsHalves && value <= kLastCodePoint);
}

unsigned char byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}

std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80)
    return 1;
  if (lead >= 0xC2 && lead <= 0xDF)
    return 2;
  if (lead >= 0xE0 && lead <= 0xEF)
    return 3;
  if (lead >= 0xF0 && lead <= 0xF4)
    return 4;
  return 0;
}

bool isOverlong(char32_t value, std::size_t length) {
  return (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
}

// The first code point of `bytes`, which are not empty; one escaped byte when they are not UTF-8.
CodePoint decodeFirst(std::string_view bytes) {
  const unsigned char lead = byteAt(bytes, 0);
  const CodePoint escaped{kEscapedByteBase + lead, 1};
  const std::size_t length = sequenceLength(lead);
  if (length == 0 || length > bytes.size())
    return escaped;
  if (length == 1)
    return {lead, 1};
  char32_t value = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned char next = byteAt(bytes, i);
    if ((next & 0xC0u) != 0x80u)
      return escaped;
    value = (value << 6) | (next & 0x3Fu);
  }
  if (isOverlong(value, length) || !canBeWritten(value))
    return escaped;
  return {value, length};
}

void appendWide(std::wstring& text, char32_t value) {
  if (kKeepsHalves && value > 0xFFFF) {
    text += static_cast<wchar_t>(0xD800 + ((value - 0x10000) >> 10));
    text += static_cast<wchar_t>(0xDC00 + ((value - 0x10000) & 0x3FF));
    return;
  }
  text += static_cast<wchar_t>(value);
}

char32_t unitAt(std::wstring_view text, std::size_t index) {
  return static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(text[index]));
}

// The first code point of `text`, which is not empty; a surrogate pair counts as one.
CodePoint readFirst(std::wstring_view text) {
  const char32_t unit = unitAt(text, 0);
  if (!isHighSurrogate(unit) || text.size() < 2 || !isLowSurrogate(unitAt(text, 1)))
    return {unit, 1};
  return {0x10000 + ((unit - 0xD800) << 10) + (unitAt(text, 1) - 0xDC00), 2};
}

void appendByte(std::string& bytes, char32_t value) {
  bytes += static_cast<char>(static_cast<unsigned char>(value));
}

void appendUtf8(std::string& bytes, char32_t value) {
  if (value < 0x80) {
    appendByte(bytes, value);
  } else if (value < 0x800) {
    appendByte(bytes, 0xC0 | (value >> 6));
    appendByte(bytes, 0x80 | (value & 0x3F));
  } else if (value < 0x10000) {
    appendByte(bytes, 0xE0 | (value >> 12));
    appendByte(bytes, 0x80 | ((value >> 6) & 0x3F));
    appendByte(bytes, 0x80 | (value & 0x3F));
  } else {
    appendByte(bytes, 0xF0 | (value >> 18));
    appendByte(bytes, 0x80 | ((value >> 12) & 0x3F));
    appendByte(bytes, 0x80 | ((value >> 6) & 0x3F));
    appendByte(bytes, 0x80 | (value & 0x3F));
  }
}

void appendBytes(std::string& bytes, char32_t value) {
  if (isEscapedByte(value)) {
    appendByte(bytes, value - kEscapedByteBase);
    return;
  }
  appendUtf8(bytes, canBeWritten(value) ? value : kReplacement);
}

}  // namespace

std::wstring toWide(std::string_view bytes) {
  std::wstring text;
  while (!bytes.empty()) {
    const CodePoint point = decodeFirst(bytes);
    appendWide(text, point.value);
    bytes.remove_prefix(point.length);
  }
  return text;
}

std::string toBytes(std::wstring_view text) {
  std::string bytes;
  while (!text.empty()) {
    const CodePoint point = readFirst(text);
    appendBytes(bytes, point.value);
    text.remove_prefix(point.length);
  }
  return bytes;
}

std::string toUtf8(std::wstring_view text) {
  std::string bytes;
  while (!text.empty()) {
    const CodePoint point = readFirst(text);
    appendUtf8(bytes, isCharacter(point.value) ? point.value : kReplacement);
    text.remove_prefix(point.length);
  }
  return bytes;
}

std::filesystem::path toNativePath(std::wstring_view text) {
  if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>)
    return std::filesystem::path(text);
  else
    return std::filesystem::path(toBytes(text));
}

std::wstring fromNativePath(const std::filesystem::path& path) {
  if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>)
    return path.wstring();
  else
    return toWide(path.string());
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
