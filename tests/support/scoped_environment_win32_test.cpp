// What the system says of a scoped variable.

#include <windows.h>

#include <gtest/gtest.h>

#include "support/scoped_environment.h"

namespace quiver_test {
namespace {

constexpr const wchar_t* kName = L"QUIVER_SUPPORT_TEST";

bool isSet() {
  return GetEnvironmentVariableW(kName, nullptr, 0) != 0;
}

TEST(ScopedVariableWindows, ChangesTheEnvironmentOfTheProcess) {
  ASSERT_FALSE(isSet());
  {
    const ScopedVariable variable("QUIVER_SUPPORT_TEST", L"v\u00e9\U0001F600");
    wchar_t value[16] = {};
    GetEnvironmentVariableW(kName, value, 16);
    EXPECT_STREQ(value, L"v\u00e9\U0001F600");
  }
  EXPECT_FALSE(isSet());
}

}  // namespace
}  // namespace quiver_test
