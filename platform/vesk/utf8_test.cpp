// Wide text as UTF-8.

#include "vesk/utf8.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

namespace vesk_1_8 {
namespace {

struct Row {
  const char* name;
  std::wstring wide;
  std::string utf8;
};

void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

class Utf8 : public testing::TestWithParam<Row> {};

TEST_P(Utf8, AppendsTheEncodedText) {
  std::string out = "before ";
  appendUtf8(out, GetParam().wide);
  EXPECT_EQ(out, "before " + GetParam().utf8);
}

// Text as a system with 16-bit characters passes it, also where characters are wider.
std::wstring units(std::initializer_list<int> values) {
  std::wstring text;
  for (const int value : values) text += static_cast<wchar_t>(value);
  return text;
}

INSTANTIATE_TEST_SUITE_P(
    Texts,
    Utf8,
    testing::Values(
        Row{"Empty", L"", ""},
        Row{"Ascii", L"C:\\a.dll", "C:\\a.dll"},
        Row{"LastOfOneByte", units({0x7F}), "\x7F"},
        Row{"FirstOfTwoBytes", units({0x80}), "\xC2\x80"},
        Row{"LastOfTwoBytes", units({0x7FF}), "\xDF\xBF"},
        Row{"FirstOfThreeBytes", units({0x800}), "\xE0\xA0\x80"},
        Row{"LastOfThreeBytes", units({0xFFFF}), "\xEF\xBF\xBF"},
        Row{"FirstOfFourBytes", units({0xD800, 0xDC00}), "\xF0\x90\x80\x80"},
        Row{"LastOfFourBytes", units({0xDBFF, 0xDFFF}), "\xF4\x8F\xBF\xBF"},
        Row{"BeyondTheFirstPlane", L"\U0001F600", "\xF0\x9F\x98\x80"},
        Row{"HighSurrogateAlone",
            units({0xD800, 'a'}),
            "\xEF\xBF\xBD"
            "a"},
        Row{"HighSurrogateAtTheEnd", units({0xD800}), "\xEF\xBF\xBD"},
        Row{"LowSurrogateAlone",
            units({0xDC80, 'a'}),
            "\xEF\xBF\xBD"
            "a"},
        Row{"TwoHighSurrogates", units({0xD800, 0xD800, 0xDC00}), "\xEF\xBF\xBD\xF0\x90\x80\x80"}),
    [](const auto& row) { return row.param.name; });

TEST(Utf8Wide, ValuesThatAreNoCharactersAreReplaced) {
  if (sizeof(wchar_t) == 2)
    GTEST_SKIP() << "a 16-bit unit holds no such value";
  std::string out;
  appendUtf8(out, units({0x110000, -1, 0x7FFFFFFF}));
  EXPECT_EQ(out, "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

}  // namespace
}  // namespace vesk_1_8
