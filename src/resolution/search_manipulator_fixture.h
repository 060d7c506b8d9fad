// What the tests of the search manipulator share: a result directory and short forms.

#pragma once

#include <cstdint>

#include <gtest/gtest.h>

#include "quiver/search_manipulator.h"
#include "support/temp_tree.h"

namespace QV_2_9 {

class SearchManipulatorTest : public testing::Test {
 protected:
  ObjectPtr<ISearchManipulator> newManipulator() const {
    return createSearchManipulatorByContext(context, nullptr, nullptr);
  }
  void setModes(ISearchManipulator& of, std::int32_t mode, const wchar_t* key = L"key") const {
    EXPECT_TRUE(of.setSearchStartedMode(key, mode));
    EXPECT_TRUE(of.setFilesFoundMode(key, mode));
    EXPECT_TRUE(of.setNoFilesFoundMode(key, mode));
  }
  ObjectPtr<ISearchEnv> env(const wchar_t* key = L"key") const {
    return manager->createSearchEnv(context.get(), key, nullptr);
  }
  /// How many of the three kinds an environment for the key has.
  int installed(const wchar_t* key = L"key") const {
    const ObjectPtr<ISearchEnv> made = env(key);
    return (made->getSearchStartedCallback().getCallback() ? 1 : 0) +
           (made->getFilesFoundCallback().getCallback() ? 1 : 0) +
           (made->getNoFilesFoundCallback().getCallback() ? 1 : 0);
  }

  quiver_test::TempTree tree;
  ObjectPtr<IResolutionContextMgr> manager = IResolutionContextMgr::create();
  ObjectPtr<IResolutionContext> context = manager->getResultDirContext(tree.root().c_str());
};

}  // namespace QV_2_9
