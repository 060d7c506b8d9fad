#include "text_encoding.h"

#include <string>

#include <gtest/gtest.h>

namespace quiver_tool {
namespace {

TEST(TextEncoding, ReplacesEachUnitThatIsNoCharacterForUtf8) {
  EXPECT_EQ(toUtf8(std::wstring{L'a', 0xDCE2, 0xDC82, 0xD800, L'\u00E9', 0xD83D, 0xDE00}),
            "a\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xC3\xA9\xF0\x9F\x98\x80");
}

TEST(TextEncoding, SpellsControlCharactersOut) {
  EXPECT_EQ(escapeControls("a\nb\x1B[0m\x7F\xC3\xA9"), "a\\x0ab\\x1b[0m\\x7f\xC3\xA9");
  EXPECT_EQ(escapeControls("\xC2\x9B[\xC2\x80 \xC2\xA0\xC2"), "\\x9b[\\x80 \xC2\xA0\xC2");
}

}  // namespace
}  // namespace quiver_tool
