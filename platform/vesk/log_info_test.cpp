// The switch of a channel follows its variable.

#include "vesk/log_info.h"

#include <string>

#include <gtest/gtest.h>

#include "support/scoped_environment.h"

namespace vesk_1_8 {
namespace {

constexpr const char* kVariable = "VESK_TEST_SWITCH";

TEST(LogInfo, IsOffWhileTheVariableIsUnset) {
  const quiver_test::ScopedVariable none(kVariable);
  const LogInfo info("channel", kVariable);
  EXPECT_EQ(static_cast<const char*>(info.Option), nullptr);
}

TEST(LogInfo, HoldsTheValueWhileTheVariableIsSet) {
  const quiver_test::ScopedVariable variable(kVariable, "verbose");
  const LogInfo info("channel", kVariable);
  EXPECT_STREQ(info.Option, "verbose");
}

TEST(LogInfo, IsOnForAnEmptyValue) {
  const quiver_test::ScopedVariable variable(kVariable, "");
  const LogInfo info("channel", kVariable);
  EXPECT_STREQ(info.Option, "");
}

TEST(LogInfo, ReadsTheVariableOnce) {
  quiver_test::ScopedVariable variable(kVariable, "first");
  const LogInfo info("channel", kVariable);
  variable.set("second, and long enough to move the environment elsewhere in memory");
  EXPECT_STREQ(info.Option, "first");
  variable.unset();
  EXPECT_STREQ(info.Option, "first");
}

TEST(LogInfo, KeepsItsOwnCopyOfTheChannelName) {
  std::string name = "channel";
  const LogInfo info(name.c_str(), kVariable);
  name.assign("changed");
  EXPECT_STREQ(info.channel(), "channel");
}

TEST(LogInfo, TakesNullTextsAsNoNameAndNoVariable) {
  const LogInfo info(nullptr, nullptr);
  EXPECT_STREQ(info.channel(), "");
  EXPECT_EQ(static_cast<const char*>(info.Option), nullptr);
}

TEST(LogInfo, CanBeSwitchedByTests) {
  const quiver_test::ScopedVariable none(kVariable);
  LogInfo info("channel", kVariable);
  info.switchForTest(true);
  EXPECT_STREQ(info.Option, "");
  info.switchForTest(false);
  EXPECT_EQ(static_cast<const char*>(info.Option), nullptr);
}

}  // namespace
}  // namespace vesk_1_8
