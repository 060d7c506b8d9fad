// Tests of files_finder.h.

#include "search/files_finder.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "search/test_doubles.h"
#include "support/temp_tree.h"

namespace QV_2_9 {
namespace {

using internal::Candidate;
using internal::RecordingResults;

class VetoEverything final : public ISearchPathFilter {
 public:
  std::vector<std::wstring> asked;
  bool isExcluded(const wchar_t* dir) override {
    asked.emplace_back(dir);
    return true;
  }
};

class FilesFinderTest : public testing::Test {
 protected:
  quiver_test::TempTree m_tree;
  RecordingResults m_results;
};

TEST_F(FilesFinderTest, StaysEmptyWhenEveryDirectoryIsVetoed) {
  m_tree.addFile("a.txt");
  VetoEverything filter;
  FilesFinder finder(&filter);
  EXPECT_FALSE(finder.addDirectory(m_tree.root().c_str(), true));
  EXPECT_TRUE(finder.empty());
  EXPECT_EQ(filter.asked, std::vector<std::wstring>{m_tree.root()});
  finder.find(L"a.txt", m_results, 2);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(FilesFinderTest, IsEmptyAgainAfterClear) {
  m_tree.addFile("a.txt");
  FilesFinder finder(nullptr);
  EXPECT_TRUE(finder.empty());
  EXPECT_TRUE(finder.addDirectory(m_tree.root().c_str(), false));
  EXPECT_FALSE(finder.empty());
  finder.clear();
  EXPECT_TRUE(finder.empty());
  finder.find(L"a.txt", m_results, 2);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(FilesFinderTest, AcceptsADirectoryThatDoesNotExist) {
  FilesFinder finder(nullptr);
  EXPECT_TRUE(finder.addDirectory(m_tree.path("absent").c_str(), false));
  EXPECT_FALSE(finder.empty());
  finder.find(L"a.txt", m_results, 2);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(FilesFinderTest, NeverTakesAnEmptyTextForTheCurrentDirectory) {
  FilesFinder finder(nullptr);
  EXPECT_TRUE(finder.addDirectory(L"", true));
  finder.find(L"files_finder_test.cpp", m_results, 2);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(FilesFinderTest, OffersHitsUnderTheStepValueOfTheScan) {
  const std::wstring path = m_tree.addFile("sub/a.txt");
  FilesFinder finder(nullptr);
  finder.addDirectory(m_tree.root().c_str(), true);
  finder.find(L"a.txt", m_results, 0x10002);
  EXPECT_EQ(m_results.candidates, (std::vector<Candidate>{{path, 0x10002}}));
}

TEST_F(FilesFinderTest, LooksBelowADirectoryOnlyWhenItIsRecursive) {
  m_tree.addFile("sub/a.txt");
  FilesFinder finder(nullptr);
  finder.addDirectory(m_tree.root().c_str(), false);
  finder.find(L"a.txt", m_results, 2);
  EXPECT_TRUE(m_results.candidates.empty());
}

TEST_F(FilesFinderTest, EndsTheScanAtAConfirmedFile) {
  const std::wstring first = m_tree.addFile("1/a.txt");
  m_tree.addFile("2/a.txt");
  m_results.stopAt = first;
  FilesFinder finder(nullptr);
  finder.addDirectory(m_tree.root().c_str(), true);
  finder.find(L"a.txt", m_results, 2);
  EXPECT_EQ(m_results.candidates.size(), 1u);
}

TEST_F(FilesFinderTest, OffersEveryHitThatIsNotConfirmed) {
  m_tree.addFile("1/a.txt");
  m_tree.addFile("2/a.txt");
  FilesFinder finder(nullptr);
  finder.addDirectory(m_tree.root().c_str(), true);
  finder.find(L"a.txt", m_results, 2);
  EXPECT_EQ(m_results.candidates.size(), 2u);
}

TEST(FileScanCallback, GoesOnUnlessTheContainerStops) {
  RecordingResults results;
  results.stopAt = L"/x/confirmed";
  FilesFinder::FileScanCallback callback(results, 0x10006);
  EXPECT_TRUE(callback.onFileFound(PAKU_3_1::String(L"/x/ranked")));
  EXPECT_FALSE(callback.onFileFound(PAKU_3_1::String(L"/x/confirmed")));
  EXPECT_EQ(results.candidates.back(), (Candidate{L"/x/confirmed", 0x10006}));
}

}  // namespace
}  // namespace QV_2_9
