// What the tests of the context manager share: a manager, a few contexts, short forms.

#pragma once

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "quiver/ref_count.h"
#include "quiver/resolution_context.h"
#include "resolution/test_doubles.h"
#include "support/temp_tree.h"

namespace QV_2_9 {

inline constexpr search_category_t kCategories[] = {
    scBinaryFiles, scSymbolFiles, scSourceFiles, scAllFiles};

/// A context of the caller's own, counted, with any name or none.
class CallersContext final : public RefCountImpl<IResolutionContext> {
 public:
  explicit CallersContext(const wchar_t* name) : m_name(name) {}
  const wchar_t* getName() override { return m_name; }

 private:
  const wchar_t* m_name;
};

class ResolutionContextMgrTest : public testing::Test {
 protected:
  ObjectPtr<IResolutionContext> context(const wchar_t* name) const {
    return new CallersContext(name);
  }
  ObjectPtr<ISearchEnv> env(IResolutionContext* ctx, const wchar_t* key = L"key") const {
    return manager->createSearchEnv(ctx, key, nullptr);
  }
  void file(IResolutionContext* ctx, const wchar_t* key, const wchar_t* dir) const {
    const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
    dirs->addSearchDir(scBinaryFiles, dir, false, false);
    manager->setSearchDirs(ctx, dirs, key);
  }
  std::vector<std::wstring> binDirs(IResolutionContext* ctx) const {
    return internal::dirsOf(env(ctx)->getSearchDirs(scBinaryFiles));
  }

  ObjectPtr<IResolutionContextMgr> manager = IResolutionContextMgr::create();
  ObjectPtr<IResolutionContext> child = context(L"child");
  ObjectPtr<IResolutionContext> parent = context(L"parent");
  ObjectPtr<IResolutionContext> grandparent = context(L"grandparent");
  quiver_test::TempTree tree;
};

inline void expectNothingConfigured(ISearchEnv& env) {
  for (const search_category_t category : kCategories) {
    EXPECT_THAT(internal::entriesOf(env.getSearchDirs(category)), testing::IsEmpty());
    EXPECT_THAT(internal::entriesOf(env.getArchiveSearchDirs(category)), testing::IsEmpty());
  }
  EXPECT_EQ(env.getSearchStartedCallback().getCallback(), nullptr);
  EXPECT_EQ(env.getFilesFoundCallback().getCallback(), nullptr);
  EXPECT_EQ(env.getNoFilesFoundCallback().getCallback(), nullptr);
  EXPECT_EQ(env.getConfidenceLevelPolicyCallback().getCallback(), nullptr);
}

}  // namespace QV_2_9
