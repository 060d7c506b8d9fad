// Checksum values and where they come from.

#include "validation/checksum_calculator.h"

#include <string>

#include <gtest/gtest.h>

#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

using quiver_test::TempTree;

constexpr const wchar_t* kMd5OfNothing = L"d41d8cd98f00b204e9800998ecf8427e";
constexpr const wchar_t* kMd5OfAbc = L"900150983cd24fb0d6963f7d28e17f72";

ObjectPtr<IChecksum> make(std::int32_t type, const wchar_t* value) {
  return IChecksumCalculator::create()->createChecksum(type, value);
}

TEST(Checksum, KeepsTypeAndTextAsGiven) {
  std::wstring text = L" 0AbC ";
  const ObjectPtr<IChecksum> checksum = make(17, text.c_str());
  text = L"changed";
  EXPECT_EQ(checksum->getType(), 17);
  EXPECT_STREQ(checksum->getValue(), L" 0AbC ");
}

TEST(Checksum, ComparesTextsIgnoringCase) {
  const ObjectPtr<IChecksum> checksum = make(ctMD5, kMd5OfAbc);
  EXPECT_TRUE(checksum->isEqual(*make(ctMD5, L"900150983CD24FB0D6963F7D28E17F72")));
  EXPECT_FALSE(checksum->isEqual(*make(ctMD5, L"900150983cd24fb0d6963f7d28e17f73")));
  EXPECT_FALSE(checksum->isEqual(*make(ctMD5, L"900150983cd24fb0d6963f7d28e17f7")));
  EXPECT_FALSE(checksum->isEqual(*make(ctMD5, L"")));
}

TEST(Checksum, OfAnotherTypeIsNeverEqual) {
  EXPECT_FALSE(make(ctMD5, kMd5OfAbc)->isEqual(*make(1, kMd5OfAbc)));
  EXPECT_TRUE(make(1, L"x")->isEqual(*make(1, L"X")));
}

TEST(ChecksumCalculator, MakesNothingOfNoText) {
  EXPECT_FALSE(make(ctMD5, nullptr));
  EXPECT_STREQ(make(ctMD5, L"")->getValue(), L"");
}

TEST(ChecksumCalculator, ComputesTheMd5OfTheContent) {
  TempTree tree;
  const ObjectPtr<IChecksum> checksum =
      IChecksumCalculator::create()->calculate(tree.addFile("a", "abc").c_str(), ctMD5);
  ASSERT_TRUE(checksum);
  EXPECT_EQ(checksum->getType(), ctMD5);
  EXPECT_STREQ(checksum->getValue(), kMd5OfAbc);
}

TEST(ChecksumCalculator, EmptyFileHasAChecksum) {
  TempTree tree;
  const ObjectPtr<IChecksum> checksum =
      IChecksumCalculator::create()->calculate(tree.addFile("a").c_str(), ctMD5);
  ASSERT_TRUE(checksum);
  EXPECT_STREQ(checksum->getValue(), kMd5OfNothing);
}

TEST(ChecksumCalculator, ComputesOnlyMd5) {
  TempTree tree;
  const std::wstring file = tree.addFile("a", "abc");
  EXPECT_FALSE(IChecksumCalculator::create()->calculate(file.c_str(), 1));
  EXPECT_FALSE(IChecksumCalculator::create()->calculate(file.c_str(), -1));
}

TEST(ChecksumCalculator, AnswersNothingForWhatIsNoReadableFile) {
  TempTree tree;
  const ObjectPtr<IChecksumCalculator> calculator = IChecksumCalculator::create();
  EXPECT_FALSE(calculator->calculate(nullptr, ctMD5));
  EXPECT_FALSE(calculator->calculate(L"", ctMD5));
  EXPECT_FALSE(calculator->calculate(tree.path("missing").c_str(), ctMD5));
  EXPECT_FALSE(calculator->calculate(tree.addDirectory("dir").c_str(), ctMD5));
}

TEST(ChecksumCalculator, IsOneObjectWhileReferenced) {
  const ObjectPtr<IChecksumCalculator> first = IChecksumCalculator::create();
  EXPECT_EQ(first.get(), IChecksumCalculator::create().get());
  EXPECT_EQ(first->addRef(), 2u);
  EXPECT_EQ(first->release(), 1u);
}

TEST(ChecksumCalculator, IsMadeAnewAfterTheLastReference) {
  TempTree tree;
  const std::wstring file = tree.addFile("a", "abc");
  ObjectPtr<IChecksumCalculator> calculator = IChecksumCalculator::create();
  calculator = nullptr;
  calculator = IChecksumCalculator::create();
  // Anything but a new object would be freed memory here.
  EXPECT_EQ(calculator->addRef(), 2u);
  calculator->release();
  EXPECT_TRUE(calculator->calculate(file.c_str(), ctMD5));
}

TEST(ChecksumCalculator, ValuesOutliveIt) {
  const ObjectPtr<IChecksum> checksum = make(ctMD5, kMd5OfAbc);
  EXPECT_STREQ(checksum->getValue(), kMd5OfAbc);
}

}  // namespace
}  // namespace QV_2_9
