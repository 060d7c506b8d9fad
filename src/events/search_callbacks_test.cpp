// The locks of the callback classes.

#include "quiver/search_callbacks.h"

#include <set>

#include <gtest/gtest.h>

#include "support/callbacks.h"

namespace QV_2_9 {
namespace {

TEST(CallbackLocks, AreFourDifferentLocks) {
  quiver_test::RecordingSearchStarted started;
  quiver_test::RecordingFilesFound found;
  quiver_test::RecordingNoFilesFound notFound;
  quiver_test::RecordingConfidenceLevelPolicy policy;
  const std::set<ISpinSharedLock*> locks = {
      started.getLock(), found.getLock(), notFound.getLock(), policy.getLock()};
  EXPECT_EQ(locks.size(), 4u);
  EXPECT_EQ(locks.count(nullptr), 0u);
}

template <class Callback>
class CallbackClass : public testing::Test {};

using Callbacks = testing::Types<quiver_test::RecordingSearchStarted,
                                 quiver_test::RecordingFilesFound,
                                 quiver_test::RecordingNoFilesFound,
                                 quiver_test::RecordingConfidenceLevelPolicy>;
TYPED_TEST_SUITE(CallbackClass, Callbacks);

TYPED_TEST(CallbackClass, HasOneLockForAllItsObjects) {
  TypeParam first;
  ISpinSharedLock* const lock = first.getLock();
  EXPECT_EQ(first.getLock(), lock);
  TypeParam second;
  EXPECT_EQ(second.getLock(), lock);
}

}  // namespace
}  // namespace QV_2_9
