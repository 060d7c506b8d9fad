// The suggested resolutions of a search, and their dump.

#include "core/string_container.h"

#include <string>

#include <gtest/gtest.h>

namespace QV_2_9 {
namespace {

TEST(StringContainer, KeepsTheOrderOfAddition) {
  StringContainer container;
  container.add(L"b");
  container.add(L"a");
  EXPECT_EQ(container.m_list, (std::list<std::wstring>{L"b", L"a"}));
}

TEST(StringContainer, IgnoresNull) {
  StringContainer container;
  container.add(nullptr);
  EXPECT_TRUE(container.m_list.empty());
}

TEST(StringContainer, KeepsAnEmptyText) {
  StringContainer container;
  container.add(L"");
  EXPECT_EQ(container.m_list, (std::list<std::wstring>{L""}));
}

TEST(StringContainer, KeepsDuplicates) {
  StringContainer container;
  container.add(L"C:\\a.dll");
  container.add(L"C:\\a.dll");
  EXPECT_EQ(container.m_list.size(), 2u);
}

TEST(StringContainer, CopiesTheText) {
  StringContainer container;
  std::wstring text = L"before";
  container.add(text.c_str());
  text.assign(L"after");
  EXPECT_EQ(container.m_list.front(), L"before");
}

TEST(StringContainer, MayGrowWhileItIsWalked) {
  StringContainer container;
  container.add(L"0");
  std::wstring seen;
  for (const std::wstring& element : container.m_list) {
    seen += element;
    if (container.m_list.size() < 100)
      container.add(std::to_wstring(container.m_list.size()).c_str());
  }
  EXPECT_EQ(container.m_list.size(), 100u);
  EXPECT_EQ(seen.substr(0, 6), L"012345");
}

// Intended: the separator follows every element, the last one too.
TEST(StringContainerToString, PutsTheSeparatorBehindEveryElement) {
  StringContainer container;
  container.add(L"C:\\a.dll");
  container.add(L"D:\\b.dll");
  EXPECT_EQ(stringContainerToString(container),
            L"[StringContainer: m_list = C:\\a.dll, D:\\b.dll, ]");
}

TEST(StringContainerToString, ShowsAnEmptyContainer) {
  EXPECT_EQ(stringContainerToString(StringContainer()), L"[StringContainer: m_list = ]");
}

TEST(StringContainerToString, ShowsEmptyElementsAndDuplicates) {
  StringContainer container;
  container.add(L"");
  container.add(L"a");
  container.add(L"a");
  EXPECT_EQ(stringContainerToString(container), L"[StringContainer: m_list = , a, a, ]");
}

}  // namespace
}  // namespace QV_2_9
