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
  EXPECT_EQ(toWide(NativePath(GetParam().bytes).get()), GetParam().wide);
  EXPECT_EQ(NativePath(GetParam().wide).get(), NativePath(GetParam().bytes).get());
}

INSTANTIATE_TEST_SUITE_P(Texts,
                         NativePathBothWays,
                         testing::Values(Row{"Empty", "", L""},
                                         Row{"Ascii", "/a.dll", L"/a.dll"},
                                         Row{"TwoBytes", "\xc3\xa9", L"\u00e9"},
                                         Row{"ThreeBytes", "\xe4\xb8\xad", L"\u4e2d"},
                                         Row{"FourBytes", "\xf0\x9f\x98\x80", L"\U0001F600"}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace quiver_test
