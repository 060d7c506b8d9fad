// Names that are no UTF-8.

#include <string>

#include <gtest/gtest.h>

#include "support/native_path.h"

namespace quiver_test {
namespace {

struct Row {
  const char* name;
  std::string bytes;
  std::wstring wide;
};

class NativePathPosixBytes : public testing::TestWithParam<Row> {};

TEST_P(NativePathPosixBytes, Converts) {
  EXPECT_EQ(toWide(GetParam().bytes), GetParam().wide);
  EXPECT_EQ(NativePath(GetParam().wide).get().native(), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Texts,
    NativePathPosixBytes,
    testing::Values(Row{"StrayByte", "a\xff", std::wstring(L"a") + wchar_t{0xDCFF}},
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
