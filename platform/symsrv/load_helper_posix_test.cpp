// The library looks for its module in its own directory, and asks for its own version.

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "symsrv/load_module.h"

namespace symsrv_1_0::internal {
namespace {

TEST(LoadModuleOnPosix, FindsNoneBesideThisProgram) {
  EXPECT_EQ(loadCreateFunction(), nullptr);
  EXPECT_FALSE(ISymSrvHelper::create());
}

TEST(ModuleOnPosix, AnswersToItsOwnVersionAlone) {
  void* module = dlopen(SYMSRV_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr) << dlerror();
  const auto create = reinterpret_cast<CreateFunction>(dlsym(module, kCreateFunction));
  ASSERT_NE(create, nullptr);
  EXPECT_EQ(create(kInterfaceVersion + 1), nullptr);
  const QV_2_9::ObjectPtr<ISymSrvHelper> helper(create(kInterfaceVersion));
  ASSERT_TRUE(helper);
  EXPECT_EQ(helper->getVersion(), 1);
  EXPECT_FALSE(helper->download(L"/missing", nullptr));
  EXPECT_FALSE(helper->download(nullptr, nullptr));
}

}  // namespace
}  // namespace symsrv_1_0::internal
