#include "support/native_path.h"

#include <string>

#include <gtest/gtest.h>

namespace quiver_test {
namespace {

struct Row {
  const char* name;
  std::string bytes;
  std::wstring wide;
};

class NativePathBothWays : public testing::TestWithParam<Row> {};

TEST_P(NativePathBothWays, Converts) {
  EXPECT_EQ(toWide(GetParam().bytes), GetParam().wide);
  EXPECT_EQ(NativePath(GetParam().wide).get().native(), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Texts,
    NativePathBothWays,
    testing::Values(Row{"Empty", "", L""},
                    Row{"Ascii", "/a.dll", L"/a.dll"},
                    Row{"TwoBytes", "\xc3\xa9", L"\u00e9"},
                    Row{"ThreeBytes", "\xe4\xb8\xad", L"\u4e2d"},
                    Row{"FourBytes", "\xf0\x9f\x98\x80", L"\U0001F600"},
                    Row{"StrayByte", "a\xff", std::wstring(L"a") + wchar_t{0xDCFF}},
                    Row{"CutShort", "\xc3", std::wstring(1, wchar_t{0xDCC3})},
                    Row{"BrokenSequence", "\xc3z", wchar_t{0xDCC3} + std::wstring(L"z")},
                    Row{"TooLongForm",
                        "\xe0\x80\xaf",
                        std::wstring{wchar_t{0xDCE0}, wchar_t{0xDC80}, wchar_t{0xDCAF}}},
                    Row{"EncodedSurrogate",
                        "\xed\xa0\x80",
                        std::wstring{wchar_t{0xDCED}, wchar_t{0xDCA0}, wchar_t{0xDC80}}}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace quiver_test
