// Tests of search_history.h.

#include "resolution/search_history.h"

#include <string>

#include <gtest/gtest.h>

#include "quiver/search_dirs.h"
#include "resolution/test_doubles.h"

namespace QV_2_9 {
namespace {

using internal::pathOf;

/// A history with one entry per category, all under the same names.
ObjectPtr<ISearchHistory> filledHistory() {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  history->addBinFileAssociation(L"f", L"/bin");
  history->addSymFileAssociation(L"f", L"b", L"c", L"/sym");
  history->addSrcFileAssociation(L"f", L"b", L"c", L"/src");
  return history;
}

std::wstring contents(ISearchHistory& history) {
  return pathOf(history.findBinFileAssociation(L"f")) + L" " +
         pathOf(history.findSymFileAssociation(L"f", L"b", L"c")) + L" " +
         pathOf(history.findSrcFileAssociation(L"f", L"b", L"c"));
}

TEST(SearchHistory, StartsEmptyAndIsNotShared) {
  const ObjectPtr<ISearchHistory> first = ISearchHistory::create();
  const ObjectPtr<ISearchHistory> second = ISearchHistory::create();
  first->addBinFileAssociation(L"a.dll", L"/a.dll");
  EXPECT_FALSE(second->findBinFileAssociation(L"a.dll"));
  EXPECT_NE(first.get(), second.get());
}

TEST(SearchHistory, LivesByItsReferences) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  EXPECT_EQ(history->getVersion(), 1);
  EXPECT_EQ(history->addRef(), 2u);
  EXPECT_EQ(history->release(), 1u);
}

TEST(SearchHistory, LaterAssociationReplacesEarlierOne) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  history->addBinFileAssociation(L"n", L"/p1");
  history->addBinFileAssociation(L"n", L"/p2");
  EXPECT_EQ(pathOf(history->findBinFileAssociation(L"n")), L"/p2");
}

TEST(SearchHistory, AddReturnsWhatFindReturns) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  const ObjectPtr<IFileAssociation> bin = history->addBinFileAssociation(L"n", L"/p");
  const ObjectPtr<IFileAssociation> sym = history->addSymFileAssociation(L"n", L"b", L"c", L"/p");
  const ObjectPtr<IFileAssociation> src = history->addSrcFileAssociation(L"n", L"b", L"c", L"/p");
  EXPECT_EQ(history->findBinFileAssociation(L"n").get(), bin.get());
  EXPECT_EQ(history->findSymFileAssociation(L"n", L"b", L"c").get(), sym.get());
  EXPECT_EQ(history->findSrcFileAssociation(L"n", L"b", L"c").get(), src.get());
}

TEST(SearchHistory, ReplacedAssociationKeepsItsPath) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  const ObjectPtr<IFileAssociation> held = history->addBinFileAssociation(L"n", L"/p1");
  const ObjectPtr<IFileAssociation> next = history->addBinFileAssociation(L"n", L"/p2");
  EXPECT_NE(held.get(), next.get());
  EXPECT_EQ(pathOf(held), L"/p1");
  EXPECT_EQ(held->addRef(), 2u) << "the history must have let go of it";
  held->release();
}

TEST(SearchHistory, AssociationSurvivesTheHistory) {
  ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  const ObjectPtr<IFileAssociation> held = history->addBinFileAssociation(L"n", L"/p");
  history = nullptr;
  EXPECT_EQ(pathOf(held), L"/p");
}

class SearchHistoryNegative : public testing::TestWithParam<const wchar_t*> {};

TEST_P(SearchHistoryNegative, EmptyPathIsRememberedAsNoPath) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  history->addBinFileAssociation(L"n", GetParam());
  history->addSymFileAssociation(L"n", L"b", L"c", GetParam());
  history->addSrcFileAssociation(L"n", L"b", L"c", GetParam());
  EXPECT_EQ(pathOf(history->findBinFileAssociation(L"n")), L"(negative)");
  EXPECT_EQ(pathOf(history->findSymFileAssociation(L"n", L"b", L"c")), L"(negative)");
  EXPECT_EQ(pathOf(history->findSrcFileAssociation(L"n", L"b", L"c")), L"(negative)");
}

INSTANTIATE_TEST_SUITE_P(NullAndEmpty,
                         SearchHistoryNegative,
                         testing::Values(nullptr, L""),
                         [](const auto& row) { return row.param ? "Empty" : "Null"; });

TEST(SearchHistory, NullAndEmptyKeyPartsAreTheSame) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  history->addBinFileAssociation(nullptr, L"/bin");
  history->addSymFileAssociation(nullptr, nullptr, nullptr, L"/sym");
  history->addSrcFileAssociation(L"s", L"", nullptr, L"/src");
  EXPECT_EQ(pathOf(history->findBinFileAssociation(L"")), L"/bin");
  EXPECT_EQ(pathOf(history->findSymFileAssociation(L"", L"", L"")), L"/sym");
  EXPECT_EQ(pathOf(history->findSrcFileAssociation(L"s", nullptr, L"")), L"/src");
}

TEST(SearchHistory, CategoriesDoNotSeeEachOther) {
  EXPECT_EQ(contents(*filledHistory()), L"/bin /sym /src");

  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  history->addBinFileAssociation(L"f", L"/bin");
  EXPECT_EQ(pathOf(history->findSymFileAssociation(L"f", L"", L"")), L"(none)");
  EXPECT_EQ(pathOf(history->findSrcFileAssociation(L"f", L"", L"")), L"(none)");
}

struct OtherRequest {
  const char* title;
  const wchar_t* name;
  const wchar_t* binary;
  const wchar_t* checksum;
};

class SearchHistoryKey : public testing::TestWithParam<OtherRequest> {};

TEST_P(SearchHistoryKey, DiffersInAnyPart) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  history->addSymFileAssociation(L"a.pdb", L"a.exe", L"1", L"/sym");
  history->addSrcFileAssociation(L"a.pdb", L"a.exe", L"1", L"/src");
  const OtherRequest& other = GetParam();
  EXPECT_FALSE(history->findSymFileAssociation(other.name, other.binary, other.checksum));
  EXPECT_FALSE(history->findSrcFileAssociation(other.name, other.binary, other.checksum));
  EXPECT_EQ(pathOf(history->findSymFileAssociation(L"a.pdb", L"a.exe", L"1")), L"/sym");
}

INSTANTIATE_TEST_SUITE_P(Requests,
                         SearchHistoryKey,
                         testing::Values(OtherRequest{"Checksum", L"a.pdb", L"a.exe", L"2"},
                                         OtherRequest{"NoChecksum", L"a.pdb", L"a.exe", L""},
                                         OtherRequest{"Binary", L"a.pdb", L"b.exe", L"1"},
                                         OtherRequest{"NameOnly", L"a.pdb", L"", L""},
                                         OtherRequest{"NameCase", L"A.pdb", L"a.exe", L"1"},
                                         OtherRequest{"BinaryCase", L"a.pdb", L"A.exe", L"1"},
                                         OtherRequest{"Directory", L"./a.pdb", L"a.exe", L"1"},
                                         OtherRequest{"Prefix", L"a.pd", L"a.exe", L"1"},
                                         OtherRequest{"PartsShifted", L"a.pdba.exe", L"", L"1"}),
                         [](const auto& row) { return std::string(row.param.title); });

TEST(SearchHistory, BinaryNamesDifferByCase) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  history->addBinFileAssociation(L"A.dll", L"/upper");
  history->addBinFileAssociation(L"a.dll", L"/lower");
  EXPECT_EQ(pathOf(history->findBinFileAssociation(L"A.dll")), L"/upper");
  EXPECT_EQ(pathOf(history->findBinFileAssociation(L"a.dll")), L"/lower");
}

TEST(FileRequestKey, OrdersByNameThenBinaryThenChecksum) {
  const FileRequestKey keys[] = {
      {L"", L"z", L"z"},
      {L"B", L"z", L"z"},
      {L"a", L"", L"z"},
      {L"a", L"b", L""},
      {L"a", L"b", L"c"},
      {L"a", L"bb", L""},
      {L"aa", L"", L""},
  };
  for (std::size_t i = 1; i < std::size(keys); ++i) EXPECT_LT(keys[i - 1], keys[i]) << i;
}

struct ClearRow {
  const char* title;
  std::int32_t category;
  const wchar_t* left;
};

class SearchHistoryClear : public testing::TestWithParam<ClearRow> {};

TEST_P(SearchHistoryClear, EmptiesWhatTheCategoryNames) {
  const ObjectPtr<ISearchHistory> history = filledHistory();
  history->clearAssociations(GetParam().category);
  EXPECT_EQ(contents(*history), GetParam().left);
}

INSTANTIATE_TEST_SUITE_P(Categories,
                         SearchHistoryClear,
                         testing::Values(ClearRow{"Binaries", scBinaryFiles, L"(none) /sym /src"},
                                         ClearRow{"Symbols", scSymbolFiles, L"/bin (none) /src"},
                                         ClearRow{"Sources", scSourceFiles, L"/bin /sym (none)"},
                                         ClearRow{"All", scAllFiles, L"(none) (none) (none)"},
                                         ClearRow{"Zero", 0, L"/bin /sym /src"},
                                         ClearRow{"Five", 5, L"/bin /sym /src"},
                                         ClearRow{"Negative", -1, L"/bin /sym /src"}),
                         [](const auto& row) { return std::string(row.param.title); });

TEST(SearchHistory, ClearedAssociationStaysValidForItsHolder) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  const ObjectPtr<IFileAssociation> held = history->addBinFileAssociation(L"n", L"/p");
  history->clearAssociations(scAllFiles);
  EXPECT_EQ(pathOf(held), L"/p");
  EXPECT_EQ(held->addRef(), 2u);
  held->release();
}

TEST(SearchHistory, CopiesItsStrings) {
  const ObjectPtr<ISearchHistory> history = ISearchHistory::create();
  wchar_t name[] = L"n";
  wchar_t path[] = L"/p";
  history->addBinFileAssociation(name, path);
  name[0] = path[1] = L'x';
  EXPECT_EQ(pathOf(history->findBinFileAssociation(L"n")), L"/p");
}

}  // namespace
}  // namespace QV_2_9
