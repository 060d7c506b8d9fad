// What the C library sees of a scoped variable.

#include <cstdlib>

#include <gtest/gtest.h>

#include "support/scoped_environment.h"

namespace quiver_test {
namespace {

constexpr const char* kName = "QUIVER_SUPPORT_TEST";

TEST(ScopedVariablePosix, ChangesTheEnvironmentOfTheProcess) {
  ASSERT_EQ(std::getenv(kName), nullptr);
  {
    const ScopedVariable variable(kName, L"v\u00e9");
    EXPECT_STREQ(std::getenv(kName), "v\xc3\xa9");
  }
  EXPECT_EQ(std::getenv(kName), nullptr);
}

}  // namespace
}  // namespace quiver_test
