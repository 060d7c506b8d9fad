#include "text_encoding.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace quiver_tool {
namespace {

struct RoundTripRow {
  const char* name;
  std::string bytes;
  std::u32string text;
};

void PrintTo(const RoundTripRow& row, std::ostream* out) {
  *out << row.name;
}

std::wstring wide(const std::u32string& text) {
  std::wstring result;
  for (const char32_t c : text) result += static_cast<wchar_t>(c);
  return result;
}

class RoundTrip : public testing::TestWithParam<RoundTripRow> {};

TEST_P(RoundTrip, KeepsEveryByte) {
  EXPECT_EQ(toWide(GetParam().bytes), wide(GetParam().text));
  EXPECT_EQ(toBytes(toWide(GetParam().bytes)), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(TextEncoding,
                         RoundTrip,
                         testing::Values(RoundTripRow{"Empty", "", U""},
                                         RoundTripRow{"Ascii", "/a b.c", U"/a b.c"},
                                         RoundTripRow{"TwoBytes", "\xC3\xA9", U"\u00E9"},
                                         RoundTripRow{"ThreeBytes", "\xE2\x82\xAC", U"\u20AC"}),
                         [](const auto& test) { return test.param.name; });

TEST(TextEncoding, KeepsCharactersBeyondTheFirstPlane) {
  EXPECT_EQ(toWide("\xF0\x9F\x98\x80"), L"\U0001F600");
  EXPECT_EQ(toBytes(L"\U0001F600"), "\xF0\x9F\x98\x80");
}

TEST(TextEncoding, WritesASurrogatePairAsOneCharacter) {
  EXPECT_EQ(toBytes(wide({0xD83D, 0xDE00})), "\xF0\x9F\x98\x80");
}

TEST(TextEncoding, ReplacesEachUnitThatIsNoCharacterForUtf8) {
  EXPECT_EQ(toUtf8(wide({U'a', 0xDCE2, 0xDC82, 0xD800, U'\u00E9', 0xD83D, 0xDE00})),
            "a\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(TextEncoding, KeepsNativePaths) {
  const std::wstring path = toWide("/a/\xC3\xA9.c");
  EXPECT_EQ(fromNativePath(toNativePath(path)), path);
}

TEST(TextEncoding, SpellsControlCharactersOut) {
  EXPECT_EQ(escapeControls("a\nb\x1B[0m\x7F\xC3\xA9"), "a\\x0ab\\x1b[0m\\x7f\xC3\xA9");
  EXPECT_EQ(escapeControls("\xC2\x9B[\xC2\x80 \xC2\xA0\xC2"), "\\x9b[\\x80 \xC2\xA0\xC2");
}

}  // namespace
}  // namespace quiver_tool
