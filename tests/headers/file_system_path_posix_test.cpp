// File names are bytes here, and need not be text.

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "quiver/file_system_path.h"

namespace QV_2_9 {
namespace {

struct UndecodableRow {
  const char* name;
  std::string bytes;
  std::wstring text;
};

void PrintTo(const UndecodableRow& row, std::ostream* out) {
  *out << row.name;
}

class FileSystemPathPosix : public testing::TestWithParam<UndecodableRow> {};

TEST_P(FileSystemPathPosix, KeepsEveryByte) {
  EXPECT_EQ(fromNameBytes(GetParam().bytes), GetParam().text);
  EXPECT_EQ(toNameBytes(GetParam().text), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Undecodable,
    FileSystemPathPosix,
    testing::Values(
        UndecodableRow{"LoneByte",
                       "a\xFF"
                       "b",
                       {L'a', 0xDCFF, L'b'}},
        UndecodableRow{"LoneContinuation", "\x80", {0xDC80}},
        UndecodableRow{"CutSequence", "\xE2\x82", {0xDCE2, 0xDC82}},
        UndecodableRow{"CutBeforeAscii", "\xE2\x82z", {0xDCE2, 0xDC82, L'z'}},
        UndecodableRow{"OverlongSlash", "\xC0\xAF", {0xDCC0, 0xDCAF}},
        UndecodableRow{"OverlongThreeBytes", "\xE0\x80\xAF", {0xDCE0, 0xDC80, 0xDCAF}},
        UndecodableRow{"OverlongFourBytes", "\xF0\x80\x80\xAF", {0xDCF0, 0xDC80, 0xDC80, 0xDCAF}},
        UndecodableRow{"EncodedSurrogate", "\xED\xB2\x80", {0xDCED, 0xDCB2, 0xDC80}},
        UndecodableRow{
            "PastTheLastCodePoint", "\xF4\x90\x80\x80", {0xDCF4, 0xDC90, 0xDC80, 0xDC80}},
        UndecodableRow{"ImpossibleLead", "\xF5", {0xDCF5}}),
    [](const auto& test) { return test.param.name; });

TEST(FileSystemPathPosix, ReplacesWhatNoFileNameHolds) {
  EXPECT_EQ(toNameBytes(std::wstring(1, wchar_t{0xD800})), "\xEF\xBF\xBD");
  EXPECT_EQ(toNameBytes(std::wstring(1, wchar_t{0xDC7F})), "\xEF\xBF\xBD");
  EXPECT_EQ(toNameBytes(std::wstring(1, wchar_t{0x110000})), "\xEF\xBF\xBD");
}

TEST(FileSystemPathPosix, KeepsNativePathsThatAreNotText) {
  const std::wstring path = fromNameBytes("/a\xFF/\xC3\xA9.c");
  EXPECT_EQ(fromNativePath(toNativePath(path)), path);
}

}  // namespace
}  // namespace QV_2_9
