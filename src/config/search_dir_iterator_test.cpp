// The walk over a copy of a list.

#include "config/search_dir_iterator.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/directories.h"

namespace QV_2_9 {
namespace {

using quiver_test::directoriesOf;
using Dirs = std::vector<std::wstring>;

ObjectPtr<ISearchDirIterator> iteratorOver(std::vector<SearchDirEntry> entries) {
  return new DefaultSearchDirIterator(std::move(entries));
}

std::wstring currentOf(ISearchDirIterator& iterator) {
  const wchar_t* dir = L"(end)";
  bool recursive = false;
  bool highPriority = false;
  iterator.get(dir, recursive, highPriority);
  return dir;
}

TEST(DefaultSearchDirIterator, StandsOnTheFirstEntryAtFirst) {
  const auto iterator = iteratorOver({{L"/a", false, false}, {L"/b", false, false}});
  EXPECT_EQ(currentOf(*iterator), L"/a");
}

TEST(DefaultSearchDirIterator, YieldsEveryEntryWithItsFlags) {
  const auto iterator = iteratorOver(
      {{L"/a", false, false}, {L"/b", true, false}, {L"/c", false, true}, {L"/d", true, true}});
  EXPECT_EQ(directoriesOf(iterator), (Dirs{L"/a", L"/b +r", L"/c +h", L"/d +rh"}));
}

TEST(DefaultSearchDirIterator, NextTellsWhetherThereIsAnEntry) {
  const auto iterator = iteratorOver({{L"/a", false, false}, {L"/b", false, false}});
  EXPECT_TRUE(iterator->next());
  EXPECT_EQ(currentOf(*iterator), L"/b");
  EXPECT_FALSE(iterator->next());
  EXPECT_EQ(currentOf(*iterator), L"(end)");
}

TEST(DefaultSearchDirIterator, StaysAtTheEnd) {
  const auto iterator = iteratorOver({{L"/a", false, false}});
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(iterator->next());
    EXPECT_EQ(currentOf(*iterator), L"(end)");
  }
}

TEST(DefaultSearchDirIterator, GoesBackToTheFirstEntry) {
  const auto iterator = iteratorOver({{L"/a", false, false}});
  iterator->next();
  iterator->reset();
  EXPECT_EQ(currentOf(*iterator), L"/a");
}

TEST(DefaultSearchDirIterator, LeavesTheOutputsAloneAtTheEnd) {
  const auto iterator = iteratorOver({});
  const wchar_t* const before = L"before";
  const wchar_t* dir = before;
  bool recursive = true;
  bool highPriority = true;
  EXPECT_FALSE(iterator->get(dir, recursive, highPriority));
  EXPECT_EQ(dir, before);
  EXPECT_TRUE(recursive);
  EXPECT_TRUE(highPriority);
}

TEST(DefaultSearchDirIterator, OverNothingIsAtTheEnd) {
  const auto iterator = iteratorOver({});
  EXPECT_FALSE(iterator->next());
  iterator->reset();
  EXPECT_EQ(directoriesOf(iterator), Dirs());
}

TEST(DefaultSearchDirIterator, TextsStayWhereTheyAreWhileItLives) {
  const auto iterator = iteratorOver({{L"/a", false, false}, {L"/b", false, false}});
  const wchar_t* first = nullptr;
  const wchar_t* again = nullptr;
  bool recursive = false;
  bool highPriority = false;
  iterator->get(first, recursive, highPriority);
  while (iterator->next()) {
  }
  iterator->reset();
  iterator->get(again, recursive, highPriority);
  EXPECT_EQ(first, again);
  EXPECT_STREQ(first, L"/a");
}

}  // namespace
}  // namespace QV_2_9
