// File names that are text.

#include "quiver/file_system_path.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace QV_2_9 {
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
  EXPECT_EQ(fromNameBytes(GetParam().bytes), wide(GetParam().text));
  EXPECT_EQ(toNameBytes(fromNameBytes(GetParam().bytes)), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(FileSystemPath,
                         RoundTrip,
                         testing::Values(RoundTripRow{"Empty", "", U""},
                                         RoundTripRow{"Ascii", "/a b.c", U"/a b.c"},
                                         RoundTripRow{"TwoBytes", "\xC3\xA9", U"\u00E9"},
                                         RoundTripRow{"ThreeBytes", "\xE2\x82\xAC", U"\u20AC"}),
                         [](const auto& test) { return test.param.name; });

TEST(FileSystemPath, KeepsCharactersBeyondTheFirstPlane) {
  EXPECT_EQ(fromNameBytes("\xF0\x9F\x98\x80"), L"\U0001F600");
  EXPECT_EQ(toNameBytes(L"\U0001F600"), "\xF0\x9F\x98\x80");
}

TEST(FileSystemPath, WritesASurrogatePairAsOneCharacter) {
  EXPECT_EQ(toNameBytes(wide({0xD83D, 0xDE00})), "\xF0\x9F\x98\x80");
}

TEST(FileSystemPath, KeepsNativePaths) {
  const std::wstring path = fromNameBytes("/a/\xC3\xA9.c");
  EXPECT_EQ(fromNativePath(toNativePath(path)), path);
}

}  // namespace
}  // namespace QV_2_9
