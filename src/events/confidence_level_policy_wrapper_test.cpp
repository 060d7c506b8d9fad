// The policy that passes on to the environment's.

#include "events/confidence_level_policy_wrapper.h"

#include <cstdint>
#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include "core/lock.h"
#include "quiver/search_env.h"
#include "support/callbacks.h"

namespace QV_2_9 {
namespace {

using Policy = quiver_test::RecordingConfidenceLevelPolicy;

std::int32_t countOfClassLock() {
  Policy any;
  return static_cast<QVSpinSharedLock*>(any.getLock())->count();
}

TEST(ConfidenceLevelPolicyWrapper, AnswersFalseWithoutAnEnvironment) {
  ConfidenceLevelPolicyWrapper wrapper{ObjectPtr<ISearchEnv>()};
  EXPECT_FALSE(wrapper.decideConfidenceLevel(scBinaryFiles, 1));
}

TEST(ConfidenceLevelPolicyWrapper, AnswersFalseWithoutAPolicy) {
  ConfidenceLevelPolicyWrapper wrapper{IEditableSearchEnv::create()};
  for (const auto category : {scBinaryFiles, scSymbolFiles, scSourceFiles, scAllFiles}) {
    for (std::int32_t step = 1; step <= 7; ++step)
      EXPECT_FALSE(wrapper.decideConfidenceLevel(category, step));
  }
}

TEST(ConfidenceLevelPolicyWrapper, PassesTheQuestionAndTheAnswerOn) {
  Policy policy;
  policy.answer = [](const quiver_test::Call& call) { return call.step == 0x10002; };
  const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setConfidenceLevelPolicyCallback(&policy);
  ConfidenceLevelPolicyWrapper wrapper{env};

  EXPECT_TRUE(wrapper.decideConfidenceLevel(scSymbolFiles, 0x10002));
  EXPECT_FALSE(wrapper.decideConfidenceLevel(scSourceFiles, 2));
  ASSERT_EQ(policy.calls().size(), 2u);
  EXPECT_EQ(policy.calls()[0].category, scSymbolFiles);
  EXPECT_EQ(policy.calls()[0].step, 0x10002);
  EXPECT_EQ(policy.calls()[1].category, scSourceFiles);
  EXPECT_EQ(policy.calls()[1].step, 2);
}

TEST(ConfidenceLevelPolicyWrapper, AsksTheEnvironmentEveryTime) {
  Policy yes;
  yes.answer = [](const quiver_test::Call&) { return true; };
  Policy no;
  const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  ConfidenceLevelPolicyWrapper wrapper{env};
  EXPECT_FALSE(wrapper.decideConfidenceLevel(scBinaryFiles, 1));
  env->setConfidenceLevelPolicyCallback(&yes);
  EXPECT_TRUE(wrapper.decideConfidenceLevel(scBinaryFiles, 1));
  env->setConfidenceLevelPolicyCallback(&no);
  EXPECT_FALSE(wrapper.decideConfidenceLevel(scBinaryFiles, 1));
  env->setConfidenceLevelPolicyCallback(&yes);
  EXPECT_TRUE(wrapper.decideConfidenceLevel(scBinaryFiles, 1));
  env->setConfidenceLevelPolicyCallback({});
  EXPECT_FALSE(wrapper.decideConfidenceLevel(scBinaryFiles, 1));
}

TEST(ConfidenceLevelPolicyWrapper, AnswersFalseOnceThePolicyIsDestroyed) {
  const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  ConfidenceLevelPolicyWrapper wrapper{env};
  {
    Policy policy;
    policy.answer = [](const quiver_test::Call&) { return true; };
    env->setConfidenceLevelPolicyCallback(&policy);
    EXPECT_TRUE(wrapper.decideConfidenceLevel(scBinaryFiles, 1));
  }
  EXPECT_FALSE(wrapper.decideConfidenceLevel(scBinaryFiles, 1));
}

TEST(ConfidenceLevelPolicyWrapper, HoldsTheClassLockSharedDuringTheCall) {
  Policy policy;
  std::int32_t countInside = 0;
  auto* const lock = static_cast<QVSpinSharedLock*>(policy.getLock());
  policy.answer = [&](const quiver_test::Call&) {
    countInside = lock->count();
    return true;
  };
  const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setConfidenceLevelPolicyCallback(&policy);
  ConfidenceLevelPolicyWrapper wrapper{env};
  wrapper.decideConfidenceLevel(scBinaryFiles, 1);
  EXPECT_EQ(countInside, 1);
  EXPECT_EQ(countOfClassLock(), 0);
}

TEST(ConfidenceLevelPolicyWrapper, LetsAnExceptionPassAndReleasesTheLock) {
  Policy policy;
  policy.answer = [](const quiver_test::Call&) -> bool { throw std::runtime_error("no"); };
  const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setConfidenceLevelPolicyCallback(&policy);
  ConfidenceLevelPolicyWrapper wrapper{env};
  EXPECT_THROW(wrapper.decideConfidenceLevel(scBinaryFiles, 1), std::runtime_error);
  EXPECT_EQ(countOfClassLock(), 0);
}

TEST(ConfidenceLevelPolicyWrapper, SharesTheLockOfThePolicies) {
  Policy policy;
  ConfidenceLevelPolicyWrapper wrapper{ObjectPtr<ISearchEnv>()};
  EXPECT_EQ(wrapper.getLock(), policy.getLock());
}

TEST(ConfidenceLevelPolicyWrapper, KeepsTheEnvironmentAlive) {
  ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  {
    const ConfidenceLevelPolicyWrapper wrapper{env};
    EXPECT_EQ(env->addRef(), 3u);
    env->release();
  }
  EXPECT_EQ(env->addRef(), 2u);
  env->release();
}

}  // namespace
}  // namespace QV_2_9
