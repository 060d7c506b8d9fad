// The words of the environment that switch the index.

#include "paku/index_settings.h"

#include <gtest/gtest.h>

namespace PAKU_3_1::internal {
namespace {

TEST(IndexSettings, ReadTheUse) {
  EXPECT_EQ(indexUseOf(L"off"), IndexUse::kNever);
  EXPECT_EQ(indexUseOf(L"always"), IndexUse::kFromFirstScan);
  EXPECT_EQ(indexUseOf(L""), IndexUse::kFromSecondScan);
  EXPECT_EQ(indexUseOf(L"OFF"), IndexUse::kFromSecondScan);
}

TEST(IndexSettings, ReadTheMemory) {
  EXPECT_EQ(indexBytesOf(L"1"), std::size_t{1} << 20);
  EXPECT_EQ(indexBytesOf(L"0"), 0u);
  EXPECT_EQ(indexBytesOf(L"2048"), std::size_t{2048} << 20);
  for (const wchar_t* text : {L"", L"2049", L"-1", L"12x", L" ", L"99999999999999999999"})
    EXPECT_EQ(indexBytesOf(text), std::size_t{256} << 20) << text;
}

TEST(IndexSettings, AreForTheWholeProcess) {
  const IndexSettings former = indexSettings();
  setIndexSettings({IndexUse::kNever, 12345});
  EXPECT_EQ(indexSettings().use, IndexUse::kNever);
  EXPECT_EQ(indexSettings().maxBytes, 12345u);
  setIndexSettings(former);
}

}  // namespace
}  // namespace PAKU_3_1::internal
