// GUIDs and texts.

#include "symsrv/guid.h"

#include <gtest/gtest.h>

#include "symsrv/file_builder_test_support.h"
#include "symsrv/text.h"

namespace symsrv_1_0::internal {
namespace {

TEST(Guid, FirstFieldsAreLittleEndianNumbers) {
  EXPECT_EQ(guidDigits(kSampleGuid), "1346E77CD2BB45C84C4C44205044422E");
  EXPECT_EQ(guidText(kSampleGuid), "1346E77C-D2BB-45C8-4C4C-44205044422E");
}

TEST(Text, NumbersHaveAtLeastTheDigitsAskedFor) {
  EXPECT_EQ(upperHex(0x2ABC, 8), "00002ABC");
  EXPECT_EQ(lowerHex(0xFFFFFFFF), "ffffffff");
  EXPECT_EQ(lowerHex(0), "0");
}

TEST(Text, ComparesWithoutCaseOfAsciiLetters) {
  EXPECT_TRUE(equalIgnoreCase("SymSrv.DLL", "symsrv.dll"));
  EXPECT_FALSE(equalIgnoreCase("a", "ab"));
  EXPECT_TRUE(startsWithIgnoreCase("SRV*x", "srv*"));
  EXPECT_FALSE(startsWithIgnoreCase("srv", "srv*"));
}

TEST(Text, TrimsBlanksAndNuls) {
  EXPECT_EQ(trimmed(std::string_view(" \t a b\r\n\0", 9)), "a b");
  EXPECT_EQ(trimmed(" \n"), "");
}

TEST(Text, KnowsWellFormedUtf8) {
  for (const char* good : {"", "abc", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"})
    EXPECT_TRUE(isUtf8(good)) << good;
  for (const char* bad :
       {"\xC3", "\xA9", "\xC0\x80", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE2\x82", "\xFF"})
    EXPECT_FALSE(isUtf8(bad)) << printable(bad);
}

TEST(Text, PrintsControlCharactersHarmlessly) {
  EXPECT_EQ(printable("a\x1B[2Jb\n"), R"(a\x1b[2Jb\x0a)");
  EXPECT_EQ(printable("\xC2\x9B"
                      "2J \xC2\x80 \xC2\xA0 \xC3\xA9 \xC2"),
            "\\x9b"
            "2J \\x80 \xC2\xA0 \xC3\xA9 \xC2");
}

TEST(Text, ReadsNumbersThatAreNothingElse) {
  EXPECT_EQ(decimal("0"), 0u);
  EXPECT_EQ(decimal("18446744073709551615"), 18446744073709551615u);
  for (const char* text : {"", "18446744073709551616", "-1", "+1", " 1", "1 ", "0x1", "1.0"})
    EXPECT_EQ(decimal(text), std::nullopt) << text;
}

}  // namespace
}  // namespace symsrv_1_0::internal
