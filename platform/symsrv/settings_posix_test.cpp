// Where caches lie on systems with desktops.

#include <gtest/gtest.h>

#include "symsrv/settings.h"

#include "support/scoped_environment.h"

namespace symsrv_1_0::internal {
namespace {

using quiver_test::ScopedVariable;

TEST(DefaultStoreOnPosix, LiesInTheUsersCaches) {
  ScopedVariable cache("XDG_CACHE_HOME", "/caches");
  ScopedVariable home("HOME", "/home/me");
  EXPECT_EQ(systemDefaultStore(), "/caches/quiver/symbols");
  cache.set("relative");
  EXPECT_EQ(systemDefaultStore(), "/home/me/.cache/quiver/symbols");
  cache.unset();
  EXPECT_EQ(systemDefaultStore(), "/home/me/.cache/quiver/symbols");
  home.set("relative");
  EXPECT_EQ(systemDefaultStore(), "") << "it would move with the working directory";
}

}  // namespace
}  // namespace symsrv_1_0::internal
