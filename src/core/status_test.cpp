// The texts of the status codes.

#include "quiver/status.h"

#include <cstdint>
#include <limits>
#include <ostream>

#include <gtest/gtest.h>

namespace QV_2_9 {
namespace {

struct Row {
  const char* name;
  std::int32_t status;
  const char* text;
};

void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

class StatusToString : public testing::TestWithParam<Row> {};

TEST_P(StatusToString, GivesTheFixedText) {
  EXPECT_STREQ(statusToString(static_cast<status_t>(GetParam().status)), GetParam().text);
}

constexpr const char* kUnknown = "Incorrect status code";

INSTANTIATE_TEST_SUITE_P(
    Values,
    StatusToString,
    testing::Values(Row{"Success", 1, "Operation succeeded"},
                    Row{"False", 0, "Operation succeeded and return logical FALSE"},
                    Row{"Error", -1, "Unspecified error"},
                    Row{"InvalidArgument", -2, "One or more arguments are invalid"},
                    Row{"NotFound", -3, "Element does not exist in the structure"},
                    Row{"AlreadyExists", -4, "Element already exists in the structure"},
                    Row{"NotImplemented", -5, "Not implemented"},
                    Row{"OutOfMemory", -6, "Out of memory"},
                    Row{"AboveTheLargest", 2, kUnknown},
                    Row{"BelowTheSmallest", -7, kUnknown},
                    Row{"Largest", std::numeric_limits<std::int32_t>::max(), kUnknown},
                    Row{"Smallest", std::numeric_limits<std::int32_t>::min(), kUnknown}),
    [](const auto& row) { return row.param.name; });

TEST(StatusToStringOrder, EnumeratorsHaveTheirValues) {
  EXPECT_EQ(stSuccess, 1);
  EXPECT_EQ(stFalse, 0);
  EXPECT_EQ(stError, -1);
  EXPECT_EQ(stInvalidArgument, -2);
  EXPECT_EQ(stNotFound, -3);
  EXPECT_EQ(stAlreadyExists, -4);
  EXPECT_EQ(stNotImplemented, -5);
  EXPECT_EQ(stOutOfMemory, -6);
}

}  // namespace
}  // namespace QV_2_9
