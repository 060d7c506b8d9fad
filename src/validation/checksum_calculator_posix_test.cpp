// Files without an end, which only POSIX systems keep among the others.

#include <gtest/gtest.h>

#include "quiver/checksum.h"
#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

TEST(ChecksumCalculatorPosix, HaveNoChecksumAndDoNotBlock) {
  quiver_test::TempTree tree;
  const ObjectPtr<IChecksumCalculator> calculator = IChecksumCalculator::create();
  EXPECT_FALSE(calculator->calculate(tree.addUnreadableFile("pipe").c_str(), ctMD5));
  EXPECT_FALSE(calculator->calculate(L"/dev/zero", ctMD5));
}

}  // namespace
}  // namespace QV_2_9
