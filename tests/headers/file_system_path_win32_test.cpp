// File names are UTF-16 here, and half of a pair may stand alone.

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "quiver/file_system_path.h"

namespace QV_2_9 {
namespace {

struct HalvesRow {
  const char* name;
  std::wstring text;
  std::string bytes;
};

void PrintTo(const HalvesRow& row, std::ostream* out) {
  *out << row.name;
}

class HalvesOfPairsWindows : public testing::TestWithParam<HalvesRow> {};

TEST_P(HalvesOfPairsWindows, MakeTheRoundTrip) {
  EXPECT_EQ(toNameBytes(GetParam().text), GetParam().bytes);
  EXPECT_EQ(fromNameBytes(GetParam().bytes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    FileSystemPath,
    HalvesOfPairsWindows,
    testing::Values(
        HalvesRow{"First", {L'a', 0xD800, L'b'}, "a\xED\xA0\x80\x62"},
        HalvesRow{"LastFirst", {0xDBFF}, "\xED\xAF\xBF"},
        HalvesRow{"Second", {0xDC00}, "\xED\xB0\x80"},
        HalvesRow{"LikeAByte", {0xDC80}, "\xED\xB2\x80"},
        HalvesRow{"LikeTwoBytesOfOneCharacter", {0xDCC3, 0xDCA9}, "\xED\xB3\x83\xED\xB2\xA9"},
        HalvesRow{"WrongWayRound", {0xDE00, 0xD83D}, "\xED\xB8\x80\xED\xA0\xBD"},
        HalvesRow{"FirstBeforeAPair", {0xD800, 0xD83D, 0xDE00}, "\xED\xA0\x80\xF0\x9F\x98\x80"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace QV_2_9
