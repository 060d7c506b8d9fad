// One category's directories: no duplicates, flags only rise.

#include "config/filtered_dir_list.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/scoped_directory.h"
#include "support/temp_tree.h"

namespace QV_2_9 {

bool operator==(const SearchDirEntry& a, const SearchDirEntry& b) {
  return a.dir == b.dir && a.recursive == b.recursive && a.highPriority == b.highPriority;
}

void PrintTo(const SearchDirEntry& entry, std::ostream* out) {
  *out << testing::PrintToString(entry.dir) << (entry.recursive ? " recursive" : "")
       << (entry.highPriority ? " high" : "");
}

namespace {

using Entries = std::vector<SearchDirEntry>;

class FilteredDirListTest : public testing::Test {
 protected:
  ObjectPtr<FilteredDirList> m_list{new FilteredDirList};
};

TEST_F(FilteredDirListTest, KeepsTheOrderOfAdditionAndTheTextAsGiven) {
  EXPECT_TRUE(m_list->add(L"/b/./x/", true, false));
  EXPECT_TRUE(m_list->add(L"/a", false, true));
  EXPECT_EQ(m_list->entries(), (Entries{{L"/b/./x/", true, false}, {L"/a", false, true}}));
}

TEST_F(FilteredDirListTest, RefusesNull) {
  EXPECT_FALSE(m_list->add(nullptr, true, true));
  EXPECT_TRUE(m_list->entries().empty());
}

TEST_F(FilteredDirListTest, MergesADuplicateIntoTheFirst) {
  EXPECT_TRUE(m_list->add(L"C:\\Dir", false, false));
  EXPECT_FALSE(m_list->add(L"c:\\dir\\", true, true));
  EXPECT_EQ(m_list->entries(), (Entries{{L"C:\\Dir", true, true}}));
}

struct FlagRow {
  const char* name;
  bool first;
  bool second;
  bool merged;
};

void PrintTo(const FlagRow& row, std::ostream* out) {
  *out << row.name;
}

class FilteredDirListFlags : public testing::TestWithParam<FlagRow> {};

TEST_P(FilteredDirListFlags, OnlyRise) {
  const FlagRow& row = GetParam();
  const ObjectPtr<FilteredDirList> recursive(new FilteredDirList);
  recursive->add(L"/dir", row.first, false);
  recursive->add(L"/dir", row.second, false);
  EXPECT_EQ(recursive->entries(), (Entries{{L"/dir", row.merged, false}}));

  const ObjectPtr<FilteredDirList> highPriority(new FilteredDirList);
  highPriority->add(L"/dir", false, row.first);
  highPriority->add(L"/dir", false, row.second);
  EXPECT_EQ(highPriority->entries(), (Entries{{L"/dir", false, row.merged}}));
}

INSTANTIATE_TEST_SUITE_P(Flags,
                         FilteredDirListFlags,
                         testing::Values(FlagRow{"StaysOff", false, false, false},
                                         FlagRow{"Rises", false, true, true},
                                         FlagRow{"IsNotLowered", true, false, true},
                                         FlagRow{"StaysOn", true, true, true}),
                         [](const auto& row) { return row.param.name; });

struct SameRow {
  const char* name;
  std::wstring first;
  std::wstring second;
  bool same;
};

void PrintTo(const SameRow& row, std::ostream* out) {
  *out << row.name;
}

class FilteredDirListSame : public testing::TestWithParam<SameRow> {};

TEST_P(FilteredDirListSame, ComparesCanonicalDirectoriesIgnoringCase) {
  const SameRow& row = GetParam();
  const ObjectPtr<FilteredDirList> list(new FilteredDirList);
  list->add(row.first.c_str(), false, false);
  EXPECT_EQ(list->add(row.second.c_str(), false, false), !row.same);
  EXPECT_EQ(list->entries().size(), row.same ? 1u : 2u);
}

INSTANTIATE_TEST_SUITE_P(
    Directories,
    FilteredDirListSame,
    testing::Values(
        SameRow{"LetterCase", L"D:\\src", L"d:\\SRC", true},
        SameRow{"TrailingSeparator", L"/x/y", L"/x/y/", true},
        SameRow{"DotComponents", L"/x/y", L"/x/./z/../y", true},
        SameRow{"DoubledSeparator", L"/x/y", L"/x//y", true},
        SameRow{"SeparatorKind", L"C:\\x\\y", L"C:/x/y", true},
        SameRow{"Other", L"/x/y", L"/x/z", false},
        SameRow{"Parent", L"/x/y", L"/x", false},
        SameRow{"PunctuationBetweenTheCases", L"/x/A", L"/x/_", false},
        SameRow{"Servers",
                L"srv*D:\\cache*https://one.example/symbols",
                L"srv*D:\\cache*https://two.example/symbols",
                false},
        SameRow{"SameServer",
                L"srv*D:\\cache*https://one.example/symbols",
                L"SRV*D:\\cache*https://one.example/symbols",
                true},
        SameRow{"ServerAndDirectory", L"srv*https://one.example/symbols", L"/symbols", false}),
    [](const auto& row) { return row.param.name; });

TEST_F(FilteredDirListTest, TakesARelativeDirectoryFromTheCurrentOne) {
  const quiver_test::TempTree tree;
  const quiver_test::ScopedDirectory current(tree.root());
  EXPECT_TRUE(m_list->add(L"sub", false, false));
  EXPECT_FALSE(m_list->add(tree.path("sub").c_str(), false, true));
  EXPECT_EQ(m_list->entries(), (Entries{{L"sub", false, true}}));
}

TEST_F(FilteredDirListTest, TakesAnyNumberInAnyOrder) {
  for (int i = 0; i < 100; ++i)
    EXPECT_TRUE(m_list->add((L"/d/" + std::to_wstring((i * 37) % 100)).c_str(), false, false));
  for (int i = 0; i < 100; ++i)
    EXPECT_FALSE(m_list->add((L"/D/" + std::to_wstring(i)).c_str(), i % 2 == 0, false));
  const Entries entries = m_list->entries();
  ASSERT_EQ(entries.size(), 100u);
  for (int i = 0; i < 100; ++i) {
    const int number = (i * 37) % 100;
    const SearchDirEntry expected{L"/d/" + std::to_wstring(number), number % 2 == 0, false};
    EXPECT_EQ(entries[static_cast<std::size_t>(i)], expected);
  }
}

TEST_F(FilteredDirListTest, BeginsAfreshWhenCleared) {
  m_list->add(L"/a", true, true);
  m_list->add(L"/b", false, false);
  m_list->clear();
  EXPECT_TRUE(m_list->entries().empty());
  EXPECT_TRUE(m_list->add(L"/b", false, false));
  EXPECT_TRUE(m_list->add(L"/a", false, false));
  EXPECT_EQ(m_list->entries(), (Entries{{L"/b", false, false}, {L"/a", false, false}}));
}

TEST_F(FilteredDirListTest, IsFilledAndReadFromSeveralThreads) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([this, i] {
      const ObjectPtr<FilteredDirList> list(m_list);
      for (int round = 0; round < 50; ++round) {
        list->add((L"/shared/" + std::to_wstring(round)).c_str(), i == 0, i == 1);
        EXPECT_LE(list->entries().size(), 50u);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  const Entries entries = m_list->entries();
  EXPECT_EQ(entries.size(), 50u);
  EXPECT_TRUE(std::all_of(entries.begin(), entries.end(), [](const SearchDirEntry& entry) {
    return entry.recursive && entry.highPriority;
  }));
  EXPECT_EQ(m_list->addRef(), 2u);
  m_list->release();
}

}  // namespace
}  // namespace QV_2_9
