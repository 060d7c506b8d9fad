// Tests of search_step.h.

#include "search/search_step.h"

#include <string>

#include <gtest/gtest.h>

namespace QV_2_9 {
namespace {

struct StepName {
  const char* testName;
  std::int32_t value;
  const wchar_t* text;
};

class SearchStepToString : public testing::TestWithParam<StepName> {};

TEST_P(SearchStepToString, GivesTheText) {
  EXPECT_STREQ(searchStepToString(static_cast<search_step_t>(GetParam().value)), GetParam().text);
}

constexpr const wchar_t* kUnknown = L"Internal error: unknown search step";

INSTANTIATE_TEST_SUITE_P(Steps,
                         SearchStepToString,
                         testing::Values(StepName{"one", 1, L"ssArchiveSearchDirs"},
                                         StepName{"two", 2, L"ssHighPrioritySearchDirs"},
                                         StepName{"three", 3, L"ssAbsoluteNameLookup"},
                                         StepName{"four", 4, L"ssSystemDirs"},
                                         StepName{"five", 5, L"ssAroundBinaryLookup"},
                                         StepName{"six", 6, L"ssLowPrioritySearchDirs"},
                                         StepName{"zero", 0, kUnknown},
                                         StepName{"suggestion", 7, kUnknown},
                                         StepName{"negative", -1, kUnknown},
                                         StepName{"recursive", 0x10002, kUnknown},
                                         StepName{"huge", 0x7FFFFFFF, kUnknown}),
                         [](const auto& row) { return row.param.testName; });

TEST(StepValue, HoldsTheStepAndTheRecursion) {
  EXPECT_EQ(internal::stepValue(ssHighPrioritySearchDirs, false), 2u);
  EXPECT_EQ(internal::stepValue(ssHighPrioritySearchDirs, true), 0x10002u);
  EXPECT_EQ(internal::stepNumber(0x10006u), 6);
  EXPECT_EQ(internal::stepNumber(7u), 7);
}

}  // namespace
}  // namespace QV_2_9
