// Names that are no text keep their bytes.

#include "paku/text_encoding.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

#include "paku/named_rows_test_support.h"
#include "paku/utf8_codec.h"

namespace PAKU_3_1 {
namespace {

using internal::byName;
using internal::decodeUtf8;
using internal::encodeUtf8;

std::string encoded(std::wstring_view text) {
  std::string bytes;
  EXPECT_TRUE(encode(text, bytes));
  return bytes;
}

template <class Unit>
void expectRoundTrip(const std::string& bytes) {
  const std::basic_string<Unit> text = decodeUtf8<Unit>(bytes);
  std::string again;
  ASSERT_TRUE(encodeUtf8(std::basic_string_view<Unit>(text), again));
  ASSERT_EQ(again, bytes);
}

void expectRoundTrips(const std::string& bytes) {
  expectRoundTrip<wchar_t>(bytes);
  expectRoundTrip<char16_t>(bytes);
  expectRoundTrip<char32_t>(bytes);
}

struct TextCase {
  const char* name;
  std::string bytes;
  std::u32string text;
};

class TextEncoding : public testing::TestWithParam<TextCase> {};

TEST_P(TextEncoding, Decodes) {
  EXPECT_EQ(decodeUtf8<char32_t>(GetParam().bytes), GetParam().text);
}

TEST_P(TextEncoding, ComesBack) {
  expectRoundTrips(GetParam().bytes);
}

const TextCase kCases[] = {
    {"Empty", "", U""},
    {"Ascii", "a.dll", U"a.dll"},
    {"TwoBytes", "\xC3\xA9", U"\u00E9"},
    {"ThreeBytes", "\xE2\x82\xAC", U"\u20AC"},
    {"FourBytes", "\xF0\x9F\x98\x80", U"\U0001F600"},
    {"Last", "\xF4\x8F\xBF\xBF", U"\U0010FFFF"},
    {"BeyondLast", "\xF4\x90\x80\x80", {0xDCF4, 0xDC90, 0xDC80, 0xDC80}},
    {"Overlong", "\xC0\xAF", {0xDCC0, 0xDCAF}},
    {"OverlongThree", "\xE0\x80\xAF", {0xDCE0, 0xDC80, 0xDCAF}},
    {"Surrogate", "\xED\xA0\x80", {0xDCED, 0xDCA0, 0xDC80}},
    {"EscapeItself", "\xED\xB2\x80", {0xDCED, 0xDCB2, 0xDC80}},
    {"CutShort", "a\xE2\x82", {U'a', 0xDCE2, 0xDC82}},
    {"LoneContinuation", "\x80z", {0xDC80, U'z'}},
    {"NeverALead", "\xFF\xFE", {0xDCFF, 0xDCFE}},
    {"BrokenThenGood", "\xE2\xC3\xA9", {0xDCE2, 0xE9}},
};

INSTANTIATE_TEST_SUITE_P(Texts, TextEncoding, testing::ValuesIn(kCases), byName<TextCase>);

TEST(TextEncodingRoundTrip, HoldsForEachByteAndEachPair) {
  for (unsigned first = 0; first < 256; ++first) {
    expectRoundTrips({static_cast<char>(first)});
    for (unsigned second = 0; second < 256; ++second)
      expectRoundTrips({static_cast<char>(first), static_cast<char>(second)});
  }
}

TEST(TextEncodingRoundTrip, HoldsForRandomBytes) {
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string bytes(random() % 12, '\0');
    // The upper half is where sequences begin and break.
    for (char& c : bytes)
      c = static_cast<char>(random() % 4 ? 0x80 + random() % 128 : random() % 128);
    expectRoundTrips(bytes);
  }
}

TEST(TextEncodingRoundTrip, HoldsForEachCharacter) {
  for (std::uint32_t c = 0; c <= internal::kMaxCodePoint; c += c < 0x3000 ? 1 : 37) {
    std::string bytes;
    if (internal::isHighSurrogate(c) || internal::isLowSurrogate(c))
      continue;
    internal::appendUtf8(bytes, c);
    ASSERT_EQ(decodeUtf8<char32_t>(bytes), std::u32string(1, c));
    expectRoundTrips(bytes);
  }
}

TEST(TextEncodingWidth, SixteenBitsUseSurrogatePairs) {
  EXPECT_EQ(decodeUtf8<char16_t>("\xF0\x9F\x98\x80"), u"\U0001F600");
}

TEST(TextEncodingWidth, ASurrogatePairIsOneCharacterInWideTextToo) {
  EXPECT_EQ(encoded(std::wstring{L'x', wchar_t{0xD83D}, wchar_t{0xDE00}}), "x\xF0\x9F\x98\x80");
  // The second half looks like an escaped byte; behind a first half it is none.
  EXPECT_EQ(encoded(std::wstring{wchar_t{0xD83D}, wchar_t{0xDC80}}), "\xF0\x9F\x92\x80");
}

TEST(TextEncodingRefusal, MeetsWhatStandsForNoBytes) {
  std::string bytes;
  for (const std::uint32_t unit : {0xD800u, 0xDBFFu, 0xDC00u, 0xDC7Fu, 0xDD00u, 0xDFFFu})
    EXPECT_FALSE(encode(std::wstring{L'a', static_cast<wchar_t>(unit)}, bytes)) << std::hex << unit;
  const std::u32string tooHigh(1, char32_t{0x110000});
  const std::u32string highest(1, char32_t{0xFFFFFFFF});
  EXPECT_FALSE(encodeUtf8(std::u32string_view(tooHigh), bytes));
  EXPECT_FALSE(encodeUtf8(std::u32string_view(highest), bytes));
  EXPECT_FALSE(encode(std::wstring{wchar_t{0xD800}, L'a'}, bytes));
}

}  // namespace
}  // namespace PAKU_3_1
