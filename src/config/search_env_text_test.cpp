// The dump of a search environment, character by character.

#include "config/search_env_text.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "quiver/ref_count.h"

namespace QV_2_9 {
namespace {

class SearchEnvToString : public testing::Test {
 protected:
  std::wstring dump(search_category_t category) { return searchEnvToString(m_env, category); }

  ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
  ObjectPtr<IEditableSearchDirContainer> m_dirs = IEditableSearchDirContainer::create();
};

TEST_F(SearchEnvToString, SaysThatThereIsNoEnvironment) {
  EXPECT_EQ(searchEnvToString({}, scBinaryFiles), L"[ISearchEnv: searchDirs = NULL pointer]");
}

TEST_F(SearchEnvToString, ShowsNothingWithoutDirectories) {
  EXPECT_EQ(dump(scBinaryFiles), L"[ISearchEnv: searchDirs = ]");
  m_env->setSearchDirs(m_dirs);
  EXPECT_EQ(dump(scBinaryFiles), L"[ISearchEnv: searchDirs = ]");
  m_dirs->clearSearchDirs(scBinaryFiles);
  EXPECT_EQ(dump(scBinaryFiles), L"[ISearchEnv: searchDirs = ]");
}

// Intended: two blanks between the flags, and a separator behind the last entry.
TEST_F(SearchEnvToString, ShowsEveryEntryWithItsFlags) {
  m_env->setSearchDirs(m_dirs);
  m_dirs->addSearchDir(scBinaryFiles, L"C:\\a", true, true);
  m_dirs->addSearchDir(scBinaryFiles, L"D:\\b", false, false);
  EXPECT_EQ(dump(scBinaryFiles),
            L"[ISearchEnv: searchDirs = C:\\a (Recursive,  HighPriority), D:\\b ( ), ]");
}

struct FlagRow {
  const char* name;
  bool recursive;
  bool highPriority;
  const wchar_t* text;
};

void PrintTo(const FlagRow& row, std::ostream* out) {
  *out << row.name;
}

class SearchEnvToStringFlags : public testing::TestWithParam<FlagRow> {};

TEST_P(SearchEnvToStringFlags, AreSpelledOut) {
  const FlagRow& row = GetParam();
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scSourceFiles, L"D:\\b", row.recursive, row.highPriority);
  const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setSearchDirs(dirs);
  EXPECT_EQ(searchEnvToString(env, scSourceFiles),
            std::wstring(L"[ISearchEnv: searchDirs = ") + row.text + L"]");
}

INSTANTIATE_TEST_SUITE_P(
    Flags,
    SearchEnvToStringFlags,
    testing::Values(FlagRow{"Both", true, true, L"D:\\b (Recursive,  HighPriority), "},
                    FlagRow{"Recursive", true, false, L"D:\\b (Recursive,  ), "},
                    FlagRow{"HighPriority", false, true, L"D:\\b ( HighPriority), "},
                    FlagRow{"None", false, false, L"D:\\b ( ), "}),
    [](const auto& row) { return row.param.name; });

TEST_F(SearchEnvToString, ShowsTheAskedCategoryOfTheOrdinaryDirectoriesOnly) {
  const ObjectPtr<IEditableSearchDirContainer> archive = IEditableSearchDirContainer::create();
  archive->addSearchDir(scBinaryFiles, L"/archive", false, false);
  m_dirs->addSearchDir(scAllFiles, L"/all", false, false);
  m_env->setSearchDirs(m_dirs);
  m_env->setArchiveSearchDirs(archive);
  EXPECT_EQ(dump(scBinaryFiles), L"[ISearchEnv: searchDirs = ]");
  EXPECT_EQ(dump(scAllFiles), L"[ISearchEnv: searchDirs = /all ( ), ]");
}

TEST_F(SearchEnvToString, LeavesNoReferenceBehind) {
  dump(scBinaryFiles);
  EXPECT_EQ(m_env->addRef(), 2u);
  m_env->release();
}

// A caller's own iterator, handed out in the middle of its walk and kept by the caller.
class OwnIterator final : public RefCountImpl<ISearchDirIterator> {
 public:
  void reset() override {
    ++resets;
    m_done = false;
  }
  bool next() override {
    m_done = true;
    return false;
  }
  bool get(const wchar_t*& dir, bool& recursive, bool& highPriority) override {
    if (m_done)
      return false;
    dir = text;
    recursive = false;
    highPriority = false;
    return true;
  }

  const wchar_t* text = L"/own";
  int resets = 0;

 private:
  bool m_done = true;
};

class OwnContainer final : public RefCountImpl<ISearchDirContainer> {
 public:
  explicit OwnContainer(const ObjectPtr<ISearchDirIterator>& iterator) : m_iterator(iterator) {}
  ObjectPtr<ISearchDirIterator> createIterator(search_category_t) override { return m_iterator; }

 private:
  ObjectPtr<ISearchDirIterator> m_iterator;
};

TEST_F(SearchEnvToString, WalksFromTheBeginningAndGoesBackThere) {
  auto* iterator = new OwnIterator;
  m_env->setSearchDirs(new OwnContainer(iterator));
  EXPECT_EQ(dump(scBinaryFiles), L"[ISearchEnv: searchDirs = /own ( ), ]");
  EXPECT_EQ(iterator->resets, 2);
}

TEST_F(SearchEnvToString, ShowsANullTextAsEmpty) {
  auto* iterator = new OwnIterator;
  iterator->text = nullptr;
  m_env->setSearchDirs(new OwnContainer(iterator));
  EXPECT_EQ(dump(scBinaryFiles), L"[ISearchEnv: searchDirs =  ( ), ]");
}

}  // namespace
}  // namespace QV_2_9
