#include "support/scoped_environment.h"

#include <optional>

#include <gtest/gtest.h>

namespace quiver_test {
namespace {

constexpr const char* kName = "QUIVER_SUPPORT_TEST";

TEST(ScopedVariable, SetsAndForgets) {
  ASSERT_EQ(ScopedVariable::valueOf(kName), std::nullopt);
  {
    const ScopedVariable variable(kName, L"v\u00e9");
    EXPECT_EQ(ScopedVariable::valueOf(kName), NativePath("v\xc3\xa9").get());
  }
  EXPECT_EQ(ScopedVariable::valueOf(kName), std::nullopt);
}

TEST(ScopedVariable, EmptyIsNotUnset) {
  const ScopedVariable variable(kName, "");
  EXPECT_EQ(ScopedVariable::valueOf(kName), NativePath("").get());
}

TEST(ScopedVariable, PutsTheFormerValueBack) {
  const ScopedVariable outer(kName, "outer");
  {
    const ScopedVariable inner(kName, "inner");
    EXPECT_EQ(ScopedVariable::valueOf(kName), NativePath("inner").get());
  }
  EXPECT_EQ(ScopedVariable::valueOf(kName), NativePath("outer").get());
  {
    const ScopedVariable inner(kName);
    EXPECT_EQ(ScopedVariable::valueOf(kName), std::nullopt);
  }
  EXPECT_EQ(ScopedVariable::valueOf(kName), NativePath("outer").get());
}

TEST(ScopedVariable, ChangesOnTheWay) {
  const ScopedVariable outer(kName, "outer");
  {
    ScopedVariable inner(kName);
    inner.set("a");
    EXPECT_EQ(ScopedVariable::valueOf(kName), NativePath("a").get());
    inner.unset();
    EXPECT_EQ(ScopedVariable::valueOf(kName), std::nullopt);
  }
  EXPECT_EQ(ScopedVariable::valueOf(kName), NativePath("outer").get());
}

}  // namespace
}  // namespace quiver_test
