// What the environment sets.

#include "symsrv/settings.h"

#include <gtest/gtest.h>

#include "support/scoped_environment.h"

namespace symsrv_1_0::internal {
namespace {

using quiver_test::ScopedVariable;
using std::chrono::milliseconds;

struct TimeRow {
  const char* name;
  const char* text;
  milliseconds total;  // 0: no limit of the user's
};

class TimeoutSetting : public ::testing::TestWithParam<TimeRow> {};

TEST_P(TimeoutSetting, ShortensEveryLimit) {
  const ScopedVariable variable("QUIVER_SYMBOL_TIMEOUT", GetParam().text);
  const Limits limits = settingsFromEnvironment().limits;
  const Limits usual;
  EXPECT_EQ(limits.total, GetParam().total);
  const bool isShort = GetParam().total.count() > 0 && GetParam().total < usual.connect;
  EXPECT_EQ(limits.connect, isShort ? GetParam().total : usual.connect);
  EXPECT_EQ(limits.firstByte, isShort ? GetParam().total : usual.firstByte);
}

const TimeRow kTimes[] = {
    {"Seconds", "5", milliseconds(5000)},
    {"Fraction", "0.25", milliseconds(250)},
    {"AlmostNothing", "0.0000001", milliseconds(1)},
    {"Weeks", "1e300", milliseconds(7 * 24 * 3600 * 1000)},
    {"Infinity", "inf", milliseconds(7 * 24 * 3600 * 1000)},
    {"Zero", "0", milliseconds(0)},
    {"Negative", "-5", milliseconds(0)},
    {"NoNumber", "nan", milliseconds(0)},
    {"Nonsense", "5x", milliseconds(0)},
    {"Empty", "", milliseconds(0)},
};
INSTANTIATE_TEST_SUITE_P(Table, TimeoutSetting, ::testing::ValuesIn(kTimes), [](const auto& row) {
  return std::string(row.param.name);
});

TEST(Settings, NameTheDefaultStore) {
  const ScopedVariable variable("QUIVER_SYMBOL_CACHE", "/caches/symbols");
  EXPECT_EQ(settingsFromEnvironment().defaultStore, "/caches/symbols");
}

TEST(Settings, TellWhetherToLookInLowerCase) {
  ScopedVariable variable("QUIVER_SYMBOL_LOWER_CASE");
  EXPECT_FALSE(settingsFromEnvironment().looksInLowerCase);
  variable.set("1");
  EXPECT_TRUE(settingsFromEnvironment().looksInLowerCase);
}

}  // namespace
}  // namespace symsrv_1_0::internal
