// What the table tests of this folder share: a row's name is the test's name.

#pragma once

#include <string>

#include <gtest/gtest.h>

#include "paku/path_style.h"

namespace PAKU_3_1::internal {

template <class Row>
std::string byName(const testing::TestParamInfo<Row>& info) {
  return info.param.name;
}

inline std::string byStyle(const testing::TestParamInfo<PathStyle>& info) {
  return info.param == PathStyle::kPosix ? "Posix" : "Windows";
}

}  // namespace PAKU_3_1::internal
