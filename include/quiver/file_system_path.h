// From the wide texts of the library to what opens a file, and back.
//
//   if (ObjectPtr<IValidFile> file = search->findSrcFile(name, nullptr, nullptr, nullptr, nullptr))
//     std::ifstream source(toNativePath(file->getPath()));
//
// `std::filesystem::path` by itself converts wide texts through the process's locale, where names
// are bytes: it refuses "ä.c" unless a locale was set, and always what is no UTF-8. These functions
// look at no locale, and every file name makes the round trip:
//
//   name on disk                      in texts of the library
//   bytes that are UTF-8              their characters
//   a byte that is no UTF-8           U+DC80 to U+DCFF
//   UTF-16, on Windows                itself, also half of a surrogate pair
//
// Header alone, with the standard library; not part of quiver.h.

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <type_traits>

namespace QV_2_9 {
namespace internal {

// Then half of a surrogate pair may stand alone in a name.
inline constexpr bool kNamesAreWide = std::is_same_v<std::filesystem::path::value_type, wchar_t>;

inline constexpr char32_t kEscapedByteBase = 0xDC00;
inline constexpr char32_t kReplacementCharacter = 0xFFFD;
inline constexpr char32_t kLastCodePoint = 0x10FFFF;

struct CodePoint {
  char32_t value;
  std::size_t length;  // in bytes or in units of wide text
};

constexpr bool isHighSurrogate(char32_t value) {
  return value >= 0xD800 && value <= 0xDBFF;
}

constexpr bool isLowSurrogate(char32_t value) {
  return value >= 0xDC00 && value <= 0xDFFF;
}

constexpr bool isCharacter(char32_t value) {
  return value <= kLastCodePoint && !isHighSurrogate(value) && !isLowSurrogate(value);
}

constexpr bool isPartOfNames(char32_t value) {
  return isCharacter(value) || (kNamesAreWide && value <= kLastCodePoint);
}

// What the first byte of a sequence announces; 0 for one that begins none.
constexpr std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80)
    return 1;
  if (lead < 0xC2 || lead > 0xF4)
    return 0;
  return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// The first code point of `bytes`, which are not empty; one escaped byte when they are no UTF-8.
inline CodePoint firstOfBytes(std::string_view bytes) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(bytes[0]);
  const CodePoint escaped{kEscapedByteBase + lead, 1};
  const std::size_t length = sequenceLength(lead);
  if (length == 0 || length > bytes.size())
    return escaped;
  char32_t value = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(bytes[i]);
    if ((next & 0xC0u) != 0x80u)
      return escaped;
    value = (value << 6) | (next & 0x3Fu);
  }
  if (value < kSmallest[length] || !isPartOfNames(value))
    return escaped;
  return {value, length};
}

inline char32_t unitAt(std::wstring_view text, std::size_t index) {
  return static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(text[index]));
}

// The first code point of `text`, which is not empty; a surrogate pair counts as one.
inline CodePoint firstOfText(std::wstring_view text) {
  const char32_t unit = unitAt(text, 0);
  if (!isHighSurrogate(unit) || text.size() < 2 || !isLowSurrogate(unitAt(text, 1)))
    return {unit, 1};
  return {0x10000 + ((unit - 0xD800) << 10) + (unitAt(text, 1) - 0xDC00), 2};
}

inline void appendText(std::wstring& text, char32_t value) {
  if (sizeof(wchar_t) == 2 && value > 0xFFFF) {
    text += static_cast<wchar_t>(0xD800 + ((value - 0x10000) >> 10));
    text += static_cast<wchar_t>(0xDC00 + ((value - 0x10000) & 0x3FF));
  } else {
    text += static_cast<wchar_t>(value);
  }
}

inline void appendUtf8(std::string& bytes, char32_t value) {
  const auto append = [&bytes](char32_t byte) {
    bytes += static_cast<char>(static_cast<unsigned char>(byte));
  };
  if (value < 0x80)
    return append(value);
  if (value < 0x800) {
    append(0xC0 | (value >> 6));
  } else if (value < 0x10000) {
    append(0xE0 | (value >> 12));
    append(0x80 | ((value >> 6) & 0x3F));
  } else {
    append(0xF0 | (value >> 18));
    append(0x80 | ((value >> 12) & 0x3F));
    append(0x80 | ((value >> 6) & 0x3F));
  }
  append(0x80 | (value & 0x3F));
}

}  // namespace internal

/// Returns the text of a name in bytes: of a command line, a configuration file, a system call. It
/// is UTF-8, whatever the locale.
inline std::wstring fromNameBytes(std::string_view bytes) {
  std::wstring text;
  while (!bytes.empty()) {
    const internal::CodePoint first = internal::firstOfBytes(bytes);
    internal::appendText(text, first.value);
    bytes.remove_prefix(first.length);
  }
  return text;
}

/// Returns the bytes of a name. On Windows, where names are no bytes, half of a surrogate pair that
/// stands alone is written in three bytes as if it were a character. U+FFFD stands for what no name
/// of this system can hold: a value past the last code point, or a surrogate that is no byte.
inline std::string toNameBytes(std::wstring_view text) {
  using namespace internal;
  std::string bytes;
  while (!text.empty()) {
    const CodePoint first = firstOfText(text);
    if (!kNamesAreWide && first.value >= 0xDC80 && first.value <= 0xDCFF)
      bytes += static_cast<char>(static_cast<unsigned char>(first.value - kEscapedByteBase));
    else
      appendUtf8(bytes, isPartOfNames(first.value) ? first.value : kReplacementCharacter);
    text.remove_prefix(first.length);
  }
  return bytes;
}

/// Returns the text as a path that the standard library opens under that very name.
inline std::filesystem::path toNativePath(std::wstring_view text) {
  if constexpr (internal::kNamesAreWide)
    return std::filesystem::path(text);
  else
    return std::filesystem::path(toNameBytes(text));
}

/// Returns a path as text for the library.
inline std::wstring fromNativePath(const std::filesystem::path& path) {
  if constexpr (internal::kNamesAreWide)
    return path.wstring();
  else
    return fromNameBytes(path.string());
}

}  // namespace QV_2_9
