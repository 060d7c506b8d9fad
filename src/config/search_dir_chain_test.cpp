// Several containers behind one.

#include "config/search_dir_chain.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "quiver/ref_count.h"
#include "support/directories.h"

namespace QV_2_9 {
namespace {

using quiver_test::directoriesOf;
using Dirs = std::vector<std::wstring>;

const Dirs kNone = {quiver_test::kNoIterator};

// A caller's own container: does what the test wants.
class OwnContainer final : public RefCountImpl<ISearchDirContainer> {
 public:
  using Answer = std::function<ObjectPtr<ISearchDirIterator>(search_category_t)>;

  explicit OwnContainer(Answer answer) : m_answer(std::move(answer)) {}
  ObjectPtr<ISearchDirIterator> createIterator(search_category_t category) override {
    return m_answer(category);
  }

 private:
  Answer m_answer;
};

const wchar_t* const kNullText = L"(null)";

// Reuses one buffer for every text, and may throw at the end.
class OwnIterator final : public RefCountImpl<ISearchDirIterator> {
 public:
  explicit OwnIterator(Dirs dirs, bool throwsAtTheEnd = false)
      : m_dirs(std::move(dirs)), m_position(m_dirs.size()), m_throwsAtTheEnd(throwsAtTheEnd) {}

  void reset() override { m_position = 0; }
  bool next() override {
    m_text = L"overwritten";
    return ++m_position < m_dirs.size();
  }
  bool get(const wchar_t*& dir, bool& recursive, bool& highPriority) override {
    if (m_position < m_dirs.size()) {
      m_text = m_dirs[m_position];
      dir = m_text == kNullText ? nullptr : m_text.c_str();
      recursive = false;
      highPriority = false;
      return true;
    }
    if (m_throwsAtTheEnd)
      throw std::runtime_error("no more");
    return false;
  }

 private:
  const Dirs m_dirs;
  std::size_t m_position;  // at the end until it is reset
  const bool m_throwsAtTheEnd;
  std::wstring m_text;
};

struct Dir {
  const wchar_t* dir;
  bool recursive;
  bool highPriority;
};

ObjectPtr<IEditableSearchDirContainer> containerOf(search_category_t category,
                                                   std::initializer_list<Dir> dirs) {
  const ObjectPtr<IEditableSearchDirContainer> container = IEditableSearchDirContainer::create();
  for (const Dir& dir : dirs)
    container->addSearchDir(category, dir.dir, dir.recursive, dir.highPriority);
  return container;
}

class SearchDirChainTest : public testing::Test {
 protected:
  Dirs dirs(search_category_t category) { return directoriesOf(m_chain->createIterator(category)); }

  ObjectPtr<ISearchDirChain> m_chain = ISearchDirChain::create();
};

TEST_F(SearchDirChainTest, HasNoIteratorWhileEmpty) {
  for (const auto category : {scBinaryFiles, scSymbolFiles, scSourceFiles, scAllFiles})
    EXPECT_EQ(dirs(category), kNone);
}

TEST_F(SearchDirChainTest, RefusesANullContainer) {
  EXPECT_FALSE(m_chain->addContainer({}));
  EXPECT_EQ(dirs(scBinaryFiles), kNone);
}

TEST_F(SearchDirChainTest, YieldsTheMembersInOrder) {
  EXPECT_TRUE(m_chain->addContainer(containerOf(scBinaryFiles, {{L"/b", true, false}})));
  EXPECT_TRUE(m_chain->addContainer(
      containerOf(scBinaryFiles, {{L"/a", false, true}, {L"/c", false, false}})));
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/b +r", L"/a +h", L"/c"}));
  EXPECT_EQ(dirs(scSymbolFiles), kNone);
}

TEST_F(SearchDirChainTest, MergesADirectoryOfSeveralMembersWhereItCameFirst) {
  m_chain->addContainer(
      containerOf(scSourceFiles, {{L"D:\\src", true, false}, {L"D:\\x", false, false}}));
  m_chain->addContainer(
      containerOf(scSourceFiles, {{L"D:\\y", false, false}, {L"d:\\SRC", false, true}}));
  EXPECT_EQ(dirs(scSourceFiles), (Dirs{L"D:\\src +rh", L"D:\\x", L"D:\\y"}));
}

TEST_F(SearchDirChainTest, HasNoIteratorWhenNoMemberYieldsADirectory) {
  const ObjectPtr<IEditableSearchDirContainer> cleared = IEditableSearchDirContainer::create();
  cleared->clearSearchDirs(scBinaryFiles);
  ASSERT_EQ(directoriesOf(cleared->createIterator(scBinaryFiles)), Dirs());
  m_chain->addContainer(cleared);
  m_chain->addContainer(IEditableSearchDirContainer::create());
  EXPECT_EQ(dirs(scBinaryFiles), kNone);
}

TEST_F(SearchDirChainTest, HasNoIteratorForAValueThatIsNoCategory) {
  m_chain->addContainer(containerOf(scBinaryFiles, {{L"/a", false, false}}));
  EXPECT_EQ(dirs(static_cast<search_category_t>(0)), kNone);
  EXPECT_EQ(dirs(static_cast<search_category_t>(5)), kNone);
}

TEST_F(SearchDirChainTest, HasNoIteratorForACategoryThatOnlyAMemberKnows) {
  const auto category = static_cast<search_category_t>(5);
  m_chain->addContainer(
      new OwnContainer([](search_category_t) { return new OwnIterator({L"/a"}); }));
  EXPECT_EQ(dirs(category), kNone);
}

TEST_F(SearchDirChainTest, TakesTheSameMemberTwice) {
  const auto member = containerOf(scBinaryFiles, {{L"/a", false, false}});
  EXPECT_TRUE(m_chain->addContainer(member));
  EXPECT_TRUE(m_chain->addContainer(member));
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/a"}));
  EXPECT_EQ(member->addRef(), 4u);
  member->release();
}

TEST_F(SearchDirChainTest, ReleasesItsMembersWithItself) {
  const auto member = containerOf(scBinaryFiles, {{L"/a", false, false}});
  m_chain->addContainer(member);
  EXPECT_EQ(member->addRef(), 3u);
  EXPECT_EQ(member->release(), 2u);
  m_chain = ObjectPtr<ISearchDirChain>();
  EXPECT_EQ(member->addRef(), 2u);
  member->release();
}

TEST_F(SearchDirChainTest, MayContainOtherChains) {
  const ObjectPtr<ISearchDirChain> inner = ISearchDirChain::create();
  inner->addContainer(containerOf(scBinaryFiles, {{L"/a", false, false}, {L"/b", true, false}}));
  m_chain->addContainer(containerOf(scBinaryFiles, {{L"/b", false, false}}));
  m_chain->addContainer(inner);
  m_chain->addContainer(inner);
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/b +r", L"/a"}));
}

TEST_F(SearchDirChainTest, IteratorIsASnapshot) {
  const auto member = containerOf(scBinaryFiles, {{L"/a", false, false}});
  m_chain->addContainer(member);
  const ObjectPtr<ISearchDirIterator> before = m_chain->createIterator(scBinaryFiles);
  member->addSearchDir(scBinaryFiles, L"/b", false, false);
  EXPECT_EQ(directoriesOf(before), (Dirs{L"/a"}));
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/a", L"/b"}));
}

TEST_F(SearchDirChainTest, CopiesEachTextBeforeItGoesOn) {
  m_chain->addContainer(new OwnContainer([](search_category_t) {
    return new OwnIterator({L"/a", L"/b"});
  }));
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/a", L"/b"}));
}

TEST_F(SearchDirChainTest, PassesOverEntriesWithoutText) {
  const auto texts = std::make_shared<Dirs>(Dirs{kNullText});
  m_chain->addContainer(
      new OwnContainer([texts](search_category_t) { return new OwnIterator(*texts); }));
  EXPECT_EQ(dirs(scBinaryFiles), kNone);
  *texts = {kNullText, L"/a"};
  EXPECT_EQ(dirs(scBinaryFiles), Dirs{L"/a"});
}

TEST_F(SearchDirChainTest, DropsTheIteratorsOfItsMembers) {
  const ObjectPtr<ISearchDirIterator> iterator(new OwnIterator({L"/a"}));
  m_chain->addContainer(new OwnContainer([&](search_category_t) { return iterator; }));
  EXPECT_EQ(dirs(scBinaryFiles), (Dirs{L"/a"}));
  EXPECT_EQ(iterator->addRef(), 2u);
  iterator->release();
}

// Whether the chain's lock is free is seen from another thread: it would block for ever.
void expectUsableFromAnotherThread(ISearchDirChain& chain) {
  std::thread([&chain] {
    EXPECT_TRUE(chain.addContainer(containerOf(scSymbolFiles, {{L"/free", false, false}})));
  }).join();
}

TEST_F(SearchDirChainTest, IsUnlockedAfterAMemberThatThrows) {
  m_chain->addContainer(new OwnContainer([](search_category_t) -> ObjectPtr<ISearchDirIterator> {
    throw std::runtime_error("no directories");
  }));
  EXPECT_THROW(m_chain->createIterator(scBinaryFiles), std::runtime_error);
  expectUsableFromAnotherThread(*m_chain);
}

TEST_F(SearchDirChainTest, IsUnlockedAfterAnIteratorThatThrows) {
  m_chain->addContainer(
      new OwnContainer([](search_category_t) { return new OwnIterator({L"/a"}, true); }));
  EXPECT_THROW(m_chain->createIterator(scBinaryFiles), std::runtime_error);
  expectUsableFromAnotherThread(*m_chain);
}

TEST_F(SearchDirChainTest, LocksOutOthersWhileItMerges) {
  std::thread other;
  bool otherWasThrough = false;
  std::atomic<bool> through{false};
  m_chain->addContainer(new OwnContainer([&](search_category_t) -> ObjectPtr<ISearchDirIterator> {
    if (!other.joinable()) {
      other = std::thread([&] {
        m_chain->addContainer(containerOf(scBinaryFiles, {{L"/late", false, false}}));
        through = true;
      });
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      otherWasThrough = through;
    }
    return {};
  }));
  EXPECT_EQ(dirs(scBinaryFiles), kNone);
  other.join();
  EXPECT_FALSE(otherWasThrough);
  EXPECT_TRUE(through);
}

}  // namespace
}  // namespace QV_2_9
