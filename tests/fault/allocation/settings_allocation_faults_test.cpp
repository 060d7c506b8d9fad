// What a search is configured with: directories, environments, callbacks, checks and their texts.

#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "fault/allocation/allocation_faults.h"
#include "fault/allocation/quiet_callbacks.h"
#include "quiver/quiver.h"
#include "support/temp_tree.h"
#include "validation/validator.h"

namespace quiver_test {
namespace {

using namespace QV_2_9;

struct Dir {
  std::wstring dir;
  bool isRecursive;
  bool isHigh;
  bool operator==(const Dir&) const = default;
};

std::vector<Dir> dirsOf(ISearchDirContainer& dirs, search_category_t category) {
  std::vector<Dir> all;
  const ObjectPtr<ISearchDirIterator> iterator = dirs.createIterator(category);
  const wchar_t* dir = nullptr;
  bool isRecursive = false;
  bool isHigh = false;
  if (iterator)
    for (iterator->reset(); iterator->get(dir, isRecursive, isHigh); iterator->next())
      all.push_back({dir, isRecursive, isHigh});
  return all;
}

class AddDirs final : public Attempt {
 public:
  void run() override {
    m_dirs->addSearchDir(scBinaryFiles, L"/one", false, true);
    m_dirs->addSearchDir(scBinaryFiles, L"/two/directory/with/a/name", true, false);
    m_dirs->addSearchDir(scBinaryFiles, L"/three", true, true);
    m_dirs->addSearchDir(scSourceFiles, L"/one", true, false);
  }
  void expectSound(bool) override {
    const std::vector<Dir> dirs = dirsOf(*m_dirs, scBinaryFiles);
    ASSERT_LE(dirs.size(), m_all.size());
    EXPECT_TRUE(std::equal(dirs.begin(), dirs.end(), m_all.begin()));
  }
  void expectUsable() override {
    run();
    EXPECT_EQ(dirsOf(*m_dirs, scBinaryFiles), m_all);
    EXPECT_EQ(dirsOf(*m_dirs, scSourceFiles), (std::vector<Dir>{{L"/one", true, false}}));
    m_dirs->clearSearchDirs(scBinaryFiles);
    EXPECT_EQ(dirsOf(*m_dirs, scBinaryFiles), std::vector<Dir>());
  }

 private:
  const std::vector<Dir> m_all = {{L"/one", false, true},
                                  {L"/two/directory/with/a/name", true, false},
                                  {L"/three", true, true}};
  ObjectPtr<IEditableSearchDirContainer> m_dirs = IEditableSearchDirContainer::create();
};

TEST_F(AllocationFaultsPosix, EndAddingDirectories) {
  expectNoHarm([] { return std::make_unique<AddDirs>(); });
}

class ChainDirs final : public Attempt {
 public:
  ChainDirs() {
    m_first->addSearchDir(scAllFiles, L"/one", true, true);
    m_second->addSearchDir(scAllFiles, L"/one", false, false);
    m_second->addSearchDir(scAllFiles, L"/two", false, false);
  }

  void run() override {
    chain(m_first);
    chain(m_second);
    dirsOf(*m_chain, scAllFiles);
  }
  void expectUsable() override {
    run();
    EXPECT_EQ(dirsOf(*m_chain, scAllFiles),
              (std::vector<Dir>{{L"/one", true, true}, {L"/two", false, false}}));
    EXPECT_FALSE(m_chain->createIterator(scSymbolFiles));
  }

 private:
  void chain(ObjectPtr<IEditableSearchDirContainer>& dirs) {
    if (!dirs)
      return;
    m_chain->addContainer(dirs);
    dirs = nullptr;
  }

  ObjectPtr<ISearchDirChain> m_chain = ISearchDirChain::create();
  ObjectPtr<IEditableSearchDirContainer> m_first = IEditableSearchDirContainer::create();
  ObjectPtr<IEditableSearchDirContainer> m_second = IEditableSearchDirContainer::create();
};

TEST_F(AllocationFaultsPosix, EndChainingDirectories) {
  expectNoHarm([] { return std::make_unique<ChainDirs>(); });
}

/// An environment whose callbacks are replaced.
class FillEnv final : public Attempt {
 public:
  FillEnv() { install(m_before); }

  void run() override {
    m_env->setSearchDirs(IEditableSearchDirContainer::create());
    m_env->setArchiveSearchDirs(IEditableSearchDirContainer::create());
    m_env->setEnvironmentInfo(IEditableEnvironmentInfo::create());
    install(m_after);
  }
  void expectSound(bool hasThrown) override {
    expectOneOf(m_env->getSearchStartedCallback(), &Set::started, hasThrown);
    expectOneOf(m_env->getFilesFoundCallback(), &Set::found, hasThrown);
    expectOneOf(m_env->getNoFilesFoundCallback(), &Set::notFound, hasThrown);
    expectOneOf(m_env->getConfidenceLevelPolicyCallback(), &Set::policy, hasThrown);
  }
  void expectUsable() override {
    run();
    expectSound(false);
    EXPECT_TRUE(m_env->getEnvironmentInfo());
  }

 private:
  struct Set {
    SuggestingSearchStarted started{L""};
    LastFilesFound found;
    ForgivingNoFilesFound notFound;
    TrustingPolicy policy;
  };

  void install(Set& set) {
    m_env->setSearchStartedCallback(&set.started);
    m_env->setFilesFoundCallback(&set.found);
    m_env->setNoFilesFoundCallback(&set.notFound);
    m_env->setConfidenceLevelPolicyCallback(&set.policy);
  }

  template <class T, class Callback>
  void expectOneOf(const CallbackHolder<T>& holder, Callback Set::*kind, bool mayBeOld) {
    const T* const held = holder.getCallback();
    EXPECT_TRUE(held == &(m_after.*kind) || (mayBeOld && held == &(m_before.*kind)));
    EXPECT_TRUE(holder.getLock());
  }

  ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
  Set m_before;
  Set m_after;
};

TEST_F(AllocationFaultsPosix, EndFillingAnEnvironment) {
  expectNoHarm([] { return std::make_unique<FillEnv>(); });
}

/// A holder that goes before its callbacks do: one that were still registered would be called where
/// there is nothing any more.
class ReplaceCallback final : public Attempt {
 public:
  using Holder = CallbackHolder<IFilesFoundCallback>;

  ReplaceCallback() : m_holder(new (m_storage) Holder(&m_first)) {}
  ~ReplaceCallback() override {
    m_holder->~Holder();
    std::memset(m_storage, 0, sizeof m_storage);
    m_first.disconnectHandlers();
    m_second.disconnectHandlers();
  }

  void run() override {
    const Holder second(&m_second);
    Holder copy(second);
    *m_holder = copy;
    copy = Holder(&m_first);
  }
  void expectSound(bool hasThrown) override {
    const IFilesFoundCallback* const held = m_holder->getCallback();
    EXPECT_TRUE(held == &m_second || (hasThrown && held == &m_first));
  }
  void expectUsable() override {
    *m_holder = Holder(&m_first);
    EXPECT_EQ(m_holder->getCallback(), &m_first);
    m_second.disconnectHandlers();
    EXPECT_EQ(m_holder->getCallback(), &m_first);
    m_first.disconnectHandlers();
    EXPECT_EQ(m_holder->getCallback(), nullptr);
    *m_holder = Holder(&m_first);
    EXPECT_EQ(m_holder->getCallback(), &m_first);
  }

 private:
  LastFilesFound m_first;
  LastFilesFound m_second;
  alignas(Holder) std::byte m_storage[sizeof(Holder)] = {};
  Holder* m_holder;
};

TEST_F(AllocationFaultsPosix, EndReplacingACallback) {
  expectNoHarm([] { return std::make_unique<ReplaceCallback>(); });
}

class CountingHandler final : public IEventHandler {
 public:
  void onGeneratorChanged(EventGenerator*) override { ++m_told; }
  int m_told = 0;
};

class AddHandlers final : public Attempt {
 public:
  void run() override {
    for (int i = 0; i < 5; ++i) {
      m_callback.addHandler(&m_handler);
      ++m_added;
    }
  }
  void expectSound(bool) override {
    m_handler.m_told = 0;
    m_callback.disconnectHandlers();
    EXPECT_EQ(m_handler.m_told, m_added);
    m_added = 0;
  }
  void expectUsable() override {
    run();
    m_callback.removeHandler(&m_handler);
    --m_added;
    expectSound(false);
  }

 private:
  CountingHandler m_handler;
  TrustingPolicy m_callback;
  int m_added = 0;
};

TEST_F(AllocationFaultsPosix, EndAddingHandlers) {
  expectNoHarm([] { return std::make_unique<AddHandlers>(); });
}

/// A text of the caller's for a mismatch.
class Text final : public RefCountImpl<ISrcChecksumMismatchMessage> {
 public:
  void formatMessage(IMsgContainer& container, const wchar_t*) override {
    container.setMessage(L"A text of the caller's own.");
  }
};

class Check final : public Attempt {
 public:
  explicit Check(std::wstring file) : m_file(std::move(file)) {}

  void run() override {
    const ObjectPtr<IMessageMgr> messages = IMessageMgr::create();
    messages->setSrcChecksumMismatchMessage(new Text);
    const ObjectPtr<IChecksum> none = IChecksumCalculator::create()->createChecksum(ctMD5, L"0");
    ChecksumValidator check(scSourceFiles, none);
    Validator::ErrorInfoContainer reason;
    EXPECT_EQ(check.validate(m_file.c_str(), reason), vrInvalid);
    EXPECT_EQ(reason.message(), L"A text of the caller's own.");
    SourceFileTimeAndSizeMatchValidator attributes(1, 2);
    EXPECT_EQ(attributes.validate(m_file.c_str(), reason), vrInvalid);
    SourceFileUpToDateCheckValidator age(m_file.c_str());
    EXPECT_EQ(age.validate(m_file.c_str(), reason), vrUndecided);
  }
  void expectUsable() override { run(); }

 private:
  const std::wstring m_file;
};

TEST_F(AllocationFaultsPosix, EndAFilesCheck) {
  TempTree tree;
  const std::wstring file = tree.addFile("a.c", "content");
  expectNoHarm([&] { return std::make_unique<Check>(file); });
}

}  // namespace
}  // namespace quiver_test
