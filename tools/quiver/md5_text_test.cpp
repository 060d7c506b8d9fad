#include "md5_text.h"

#include <string>

#include <gtest/gtest.h>

#include "usage_error.h"

namespace quiver_tool {
namespace {

std::string complaint(const std::wstring& text) {
  try {
    checkMd5Text(text);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "none";
}

TEST(Md5Text, TakesBothLetterCases) {
  EXPECT_EQ(complaint(L"d41d8cd98f00b204e9800998ecf8427e"), "none");
  EXPECT_EQ(complaint(L"D41D8CD98F00B204E9800998ECF8427E"), "none");
}

TEST(Md5Text, NamesTheLength) {
  EXPECT_EQ(complaint(L"d41d8cd98f00b204e9800998ecf8427"),
            "--md5: an MD5 is 32 hexadecimal digits; this text has 31 characters");
  EXPECT_EQ(complaint(L"d41d8cd98f00b204e9800998ecf8427e0"),
            "--md5: an MD5 is 32 hexadecimal digits; this text has 33 characters");
  EXPECT_EQ(complaint(L""), "--md5: an MD5 is 32 hexadecimal digits; this text has 0 characters");
}

TEST(Md5Text, NamesTheFirstBadCharacter) {
  EXPECT_EQ(complaint(L"d41g8cd98f00b204z9800998ecf8427e"),
            "--md5: an MD5 is 32 hexadecimal digits; this text has 32 characters, of which the "
            "first that is no digit is 'g' at position 4");
  EXPECT_EQ(complaint(L"\u00E9"),
            "--md5: an MD5 is 32 hexadecimal digits; this text has 1 character, of which the first "
            "that is no digit is '\xC3\xA9' at position 1");
}

}  // namespace
}  // namespace quiver_tool
