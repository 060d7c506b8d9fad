// What the table tests of this folder share: a row's name is the test's name.

#pragma once

#include <string>

#include <gtest/gtest.h>

namespace PAKU_3_1::internal {

template <class Row>
std::string byName(const testing::TestParamInfo<Row>& info) {
  return info.param.name;
}

}  // namespace PAKU_3_1::internal
