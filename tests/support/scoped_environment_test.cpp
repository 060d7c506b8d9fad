#include "support/scoped_environment.h"

#include <cstdlib>

#include <gtest/gtest.h>

namespace quiver_test {
namespace {

constexpr const char* kName = "QUIVER_SUPPORT_TEST";

TEST(ScopedVariable, SetsAndForgets) {
  ASSERT_EQ(std::getenv(kName), nullptr);
  {
    const ScopedVariable variable(kName, L"v\u00e9");
    EXPECT_STREQ(std::getenv(kName), "v\xc3\xa9");
  }
  EXPECT_EQ(std::getenv(kName), nullptr);
}

TEST(ScopedVariable, EmptyIsNotUnset) {
  const ScopedVariable variable(kName, "");
  EXPECT_STREQ(std::getenv(kName), "");
}

TEST(ScopedVariable, PutsTheFormerValueBack) {
  const ScopedVariable outer(kName, "outer");
  {
    const ScopedVariable inner(kName, "inner");
    EXPECT_STREQ(std::getenv(kName), "inner");
  }
  EXPECT_STREQ(std::getenv(kName), "outer");
  {
    const ScopedVariable inner(kName);
    EXPECT_EQ(std::getenv(kName), nullptr);
  }
  EXPECT_STREQ(std::getenv(kName), "outer");
}

TEST(ScopedVariable, ChangesOnTheWay) {
  const ScopedVariable outer(kName, "outer");
  {
    ScopedVariable inner(kName);
    inner.set("a");
    EXPECT_STREQ(std::getenv(kName), "a");
    inner.unset();
    EXPECT_EQ(std::getenv(kName), nullptr);
  }
  EXPECT_STREQ(std::getenv(kName), "outer");
}

}  // namespace
}  // namespace quiver_test
