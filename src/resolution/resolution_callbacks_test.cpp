// Tests of resolution_context_mgr.h: which callbacks an environment gets.

#include <memory>

#include <gtest/gtest.h>

#include "resolution/resolution_context_mgr.h"
#include "resolution/resolution_context_mgr_fixture.h"
#include "support/callbacks.h"

namespace QV_2_9 {
namespace {

using quiver_test::RecordingConfidenceLevelPolicy;
using quiver_test::RecordingFilesFound;
using quiver_test::RecordingNoFilesFound;
using quiver_test::RecordingSearchStarted;

class ResolutionContextMgrCallbacks : public ResolutionContextMgrTest {
 protected:
  struct Four {
    RecordingSearchStarted started;
    RecordingFilesFound found;
    RecordingNoFilesFound notFound;
    RecordingConfidenceLevelPolicy policy;
  };
  void fileAll(IResolutionContext* ctx, const wchar_t* key, Four& four) const {
    EXPECT_TRUE(manager->setSearchStartedCallback(ctx, key, &four.started));
    EXPECT_TRUE(manager->setFilesFoundCallback(ctx, key, &four.found));
    EXPECT_TRUE(manager->setNoFilesFoundCallback(ctx, key, &four.notFound));
    EXPECT_TRUE(manager->setConfidenceLevelPolicyCallback(ctx, key, &four.policy));
  }
};

TEST_F(ResolutionContextMgrCallbacks, AllFourKindsAreInstalled) {
  Four four;
  fileAll(child.get(), L"key", four);
  const ObjectPtr<ISearchEnv> made = env(child.get());
  EXPECT_EQ(made->getSearchStartedCallback().getCallback(), &four.started);
  EXPECT_EQ(made->getFilesFoundCallback().getCallback(), &four.found);
  EXPECT_EQ(made->getNoFilesFoundCallback().getCallback(), &four.notFound);
  EXPECT_EQ(made->getConfidenceLevelPolicyCallback().getCallback(), &four.policy);
}

TEST_F(ResolutionContextMgrCallbacks, NearestContextWinsKindByKind) {
  Four near;
  Four far;
  manager->setParentContext(parent.get(), grandparent.get());
  manager->setParentContext(child.get(), parent.get());
  fileAll(grandparent.get(), L"key", far);
  manager->setSearchStartedCallback(child.get(), L"key", &near.started);
  manager->setNoFilesFoundCallback(parent.get(), L"key", &near.notFound);
  manager->setConfidenceLevelPolicyCallback(parent.get(), L"key", &near.policy);
  const ObjectPtr<ISearchEnv> made = env(child.get());
  EXPECT_EQ(made->getSearchStartedCallback().getCallback(), &near.started);
  EXPECT_EQ(made->getFilesFoundCallback().getCallback(), &far.found);
  EXPECT_EQ(made->getNoFilesFoundCallback().getCallback(), &near.notFound);
  EXPECT_EQ(made->getConfidenceLevelPolicyCallback().getCallback(), &near.policy);
}

TEST_F(ResolutionContextMgrCallbacks, RemovedCallbackLetsTheParentsShowThrough) {
  Four near;
  Four far;
  manager->setParentContext(child.get(), parent.get());
  fileAll(parent.get(), L"key", far);
  fileAll(child.get(), L"key", near);
  EXPECT_TRUE(manager->setFilesFoundCallback(child.get(), L"key", nullptr));
  const ObjectPtr<ISearchEnv> made = env(child.get());
  EXPECT_EQ(made->getFilesFoundCallback().getCallback(), &far.found);
  EXPECT_EQ(made->getSearchStartedCallback().getCallback(), &near.started);
}

TEST_F(ResolutionContextMgrCallbacks, OnlyTheKeyAskedForCounts) {
  Four four;
  fileAll(child.get(), L"key", four);
  expectNothingConfigured(*env(child.get(), L"Key"));
  expectNothingConfigured(*env(child.get(), L""));
}

TEST_F(ResolutionContextMgrCallbacks, NullKeyInstallsNone) {
  Four four;
  fileAll(child.get(), L"key", four);
  fileAll(child.get(), L"", four);
  expectNothingConfigured(*env(child.get(), nullptr));
}

TEST_F(ResolutionContextMgrCallbacks, NullKeyIsRefused) {
  Four four;
  EXPECT_FALSE(manager->setSearchStartedCallback(child.get(), nullptr, &four.started));
  EXPECT_FALSE(manager->setFilesFoundCallback(child.get(), nullptr, &four.found));
  EXPECT_FALSE(manager->setNoFilesFoundCallback(child.get(), nullptr, &four.notFound));
  EXPECT_FALSE(manager->setConfidenceLevelPolicyCallback(child.get(), nullptr, &four.policy));
  expectNothingConfigured(*env(child.get(), L""));
}

TEST_F(ResolutionContextMgrCallbacks, DestroyedCallbackIsForgotten) {
  auto four = std::make_unique<Four>();
  fileAll(child.get(), L"key", *four);
  const ObjectPtr<ISearchEnv> before = env(child.get());
  four.reset();
  expectNothingConfigured(*before);
  expectNothingConfigured(*env(child.get()));
}

TEST_F(ResolutionContextMgrCallbacks, CallbacksMayOutliveTheManager) {
  Four four;
  fileAll(child.get(), L"key", four);
  manager = nullptr;
  four.found.disconnectHandlers();
  manager = IResolutionContextMgr::create();
  expectNothingConfigured(*env(child.get()));
}

}  // namespace
}  // namespace QV_2_9
