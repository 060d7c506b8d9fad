// Names are bytes: UTF-8 where possible, anything otherwise.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "support/native_path.h"

namespace quiver_test {
namespace {

static_assert(sizeof(wchar_t) == 4, "a wide character is a code point");

constexpr std::uint32_t kStrayByteBase = 0xDC00;  // plus 0x80 to 0xFF

struct Sequence {
  std::size_t length = 0;  // 0: no UTF-8
  std::uint32_t codePoint = 0;
};

std::uint8_t byteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

std::size_t lengthFromLead(std::uint8_t lead) {
  if (lead < 0x80)
    return 1;
  if (lead >= 0xC2 && lead <= 0xDF)
    return 2;
  if (lead >= 0xE0 && lead <= 0xEF)
    return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

bool isScalarOfLength(std::uint32_t codePoint, std::size_t length) {
  constexpr std::array<std::uint32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return codePoint >= kSmallest[length] && codePoint <= 0x10FFFF && !surrogate;
}

Sequence decode(std::string_view text) {
  const std::size_t length = lengthFromLead(byteAt(text, 0));
  if (length == 0 || length > text.size())
    return {};
  if (length == 1)
    return {1, byteAt(text, 0)};
  std::uint32_t codePoint = byteAt(text, 0) & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(text, i) & 0xC0) != 0x80)
      return {};
    codePoint = codePoint << 6 | (byteAt(text, i) & 0x3Fu);
  }
  return isScalarOfLength(codePoint, length) ? Sequence{length, codePoint} : Sequence{};
}

void encode(std::uint32_t codePoint, std::string& out) {
  const auto append = [&out](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (codePoint >= kStrayByteBase + 0x80 && codePoint <= kStrayByteBase + 0xFF) {
    append(codePoint - kStrayByteBase);
  } else if (codePoint < 0x80) {
    append(codePoint);
  } else if (codePoint < 0x800) {
    append(0xC0 | codePoint >> 6);
    append(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x10000) {
    append(0xE0 | codePoint >> 12);
    append(0x80 | (codePoint >> 6 & 0x3F));
    append(0x80 | (codePoint & 0x3F));
  } else {
    append(0xF0 | codePoint >> 18);
    append(0x80 | (codePoint >> 12 & 0x3F));
    append(0x80 | (codePoint >> 6 & 0x3F));
    append(0x80 | (codePoint & 0x3F));
  }
}

std::string toBytes(const std::wstring& text) {
  std::string bytes;
  for (const wchar_t unit : text) encode(static_cast<std::uint32_t>(unit), bytes);
  return bytes;
}

}  // namespace

NativePath::NativePath(const char* text) : m_path(text) {}
NativePath::NativePath(const std::string& text) : m_path(text) {}
NativePath::NativePath(const std::wstring& text) : m_path(toBytes(text)) {}

std::wstring toWide(const std::filesystem::path& path) {
  std::wstring text;
  for (std::string_view rest = path.native(); !rest.empty();) {
    Sequence next = decode(rest);
    if (next.length == 0)
      next = {1, kStrayByteBase + byteAt(rest, 0)};
    text.push_back(static_cast<wchar_t>(next.codePoint));
    rest.remove_prefix(next.length);
  }
  return text;
}

}  // namespace quiver_test
