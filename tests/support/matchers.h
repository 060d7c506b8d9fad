// Matchers for what searches return; a mismatch says which part differs.
//
//   EXPECT_THAT(file, IsValidFile(tree.path("a.dll"), 1, ssHighPrioritySearchDirs));
//   EXPECT_THAT(verdict->getInvalidFile(), IsInvalidFile(ecUnusable, L"%FileIsDirectory"));

#pragma once

#include <cstdint>
#include <string>

#include <gmock/gmock.h>

#include "quiver/object.h"
#include "quiver/search_results.h"

namespace quiver_test {

testing::Matcher<const QV_2_9::ObjectPtr<QV_2_9::IValidFile>&> IsValidFile(const std::wstring& path,
                                                                           std::int32_t confidence,
                                                                           std::int32_t step);

testing::Matcher<const QV_2_9::ObjectPtr<QV_2_9::IInvalidFile>&> IsInvalidFile(
    std::int32_t code, const std::wstring& message);

}  // namespace quiver_test
