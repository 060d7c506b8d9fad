// Lookups of each category, in walks and through the index of trees.

#include <fcntl.h>
#include <ostream>
#include <string>

#include "paku/file_descriptor_posix.h"
#include "paku/index_settings.h"
#include "paku/tree_registry.h"
#include "paku/trusted_file_system_posix.h"

#include "core/trace.h"
#include "fault/allocation/allocation_faults.h"
#include "fault/allocation/quiet_callbacks.h"
#include "fault/allocation/quiet_routines.h"
#include "quiver/quiver.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace quiver_test {
namespace {

using namespace QV_2_9;
using PAKU_3_1::internal::IndexUse;
using PAKU_3_1::internal::TreeRegistry;

constexpr const wchar_t* kMd5OfRight = L"7c4f29407893c334a6cb7a87bf045c0d";  // of "right"

std::wstring pathOf(const FilePtr& file) {
  return file ? file->getPath() : L"";
}

/// What one lookup is asked and has to answer.
struct Question {
  search_category_t category = scBinaryFiles;
  std::wstring name;
  std::wstring binary = L"";
  const wchar_t* md5 = nullptr;  ///< Null: no check.
  std::wstring suggestion = L"";
  std::wstring answer = L"";  ///< Empty: nothing is to be found.
  bool isIndexed = false;     ///< That tree is.
  bool isInOneTree = false;   ///< All that there is, in place of two trees of other priority.
};

/// A file search over the directories of a tree.
class Searcher {
 public:
  Searcher(const TempTree& tree, bool isInOneTree, ISearchJournal* journal) {
    const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
    dirs->addSearchDir(
        scAllFiles, isInOneTree ? tree.root().c_str() : tree.path("high").c_str(), true, true);
    if (!isInOneTree)
      dirs->addSearchDir(scAllFiles, tree.path("low").c_str(), true, false);
    m_env->setSearchDirs(dirs);
    m_env->setArchiveSearchDirs(IEditableSearchDirContainer::create());
    m_search = journal ? createFileSearchWithJournal(m_env, journal) : IFileSearch::create(m_env);
  }

  FilePtr ask(const Question& question) const {
    const ObjectPtr<IChecksum> expected =
        IChecksumCalculator::create()->createChecksum(ctMD5, question.md5);
    ChecksumValidator check(question.category, expected);
    IValidatorCallback* const validator = question.md5 ? &check : nullptr;
    const wchar_t* const name = question.name.c_str();
    const wchar_t* const binary = question.binary.c_str();
    const wchar_t* const suggestion = question.suggestion.c_str();
    if (question.category == scBinaryFiles)
      return m_search->findBinFile(name, validator, suggestion);
    if (question.category == scSymbolFiles)
      return m_search->findSymFile(name, binary, nullptr, validator, suggestion, nullptr);
    return m_search->findSrcFile(name, binary, nullptr, validator, suggestion);
  }

  ObjectPtr<IEditableSearchEnv> m_env = IEditableSearchEnv::create();
  ObjectPtr<IFileSearch> m_search;
};

class Lookup : public Attempt {
 public:
  Lookup(const TempTree& tree, const Question& question, ISearchJournal* journal = nullptr)
      : m_question(question), m_searcher(tree, question.isInOneTree, journal) {}

  void run() override { m_answer = m_searcher.ask(m_question); }
  void expectSound(bool hasThrown) override {
    if (!hasThrown) {
      EXPECT_EQ(pathOf(m_answer), m_question.answer);
      EXPECT_TRUE(!m_question.md5 || !m_answer || m_answer->getConfidenceLevel() == 0);
    }
    m_answer = nullptr;
  }
  void expectUsable() override {
    const std::size_t before = TreeRegistry::instance().counts().answered;
    EXPECT_EQ(pathOf(m_searcher.ask(m_question)), m_question.answer);
    if (m_question.isIndexed) {
      EXPECT_GT(TreeRegistry::instance().counts().answered, before);
    }
  }

 protected:
  QuietRoutines m_routines;
  const Question& m_question;
  Searcher m_searcher;
  FilePtr m_answer;
};

class LookupAllocationFaultsPosix : public AllocationFaultsPosix {
 protected:
  LookupAllocationFaultsPosix() {
    m_tree.addFile("high/src/lib/a.c", "wrong");
    m_tree.addFile("high/app.exe", "wrong");
    m_tree.addFile("low/other/lib/A.c", "wrong too");
    m_tree.addFile("low/src/lib/a.c", "right");
    m_tree.addFile("bin/app.exe", "right");
    m_tree.addFile("bin/app.sym", "symbols");
    // The library that computes it can never be used when it lacks memory on its first use.
    IChecksumCalculator::create()->calculate(m_tree.path("bin/app.sym").c_str(), ctMD5);
  }
  ~LookupAllocationFaultsPosix() override {
    PAKU_3_1::internal::setIndexSettings(m_former);
    TreeRegistry::instance().clear();
  }

  void use(IndexUse use) { PAKU_3_1::internal::setIndexSettings({use, m_former.maxBytes}); }

  MakeAttempt lookup(ISearchJournal* journal = nullptr) const {
    return [this, journal] { return std::make_unique<Lookup>(m_tree, m_question, journal); };
  }

  /// Candidates that are wrong come first where there is a check.
  Question question(search_category_t category, bool isInOneTree = false) const {
    if (category == scBinaryFiles)
      return {.category = category,
              .name = L"C:\\ci\\app.exe",
              .answer = m_tree.path(isInOneTree ? "bin/app.exe" : "high/app.exe"),
              .isInOneTree = isInOneTree};
    if (category == scSymbolFiles)
      return {.category = category,
              .name = L"/ci/app.sym",
              .binary = m_tree.path("bin/app.exe"),
              .answer = m_tree.path("bin/app.sym"),
              .isInOneTree = isInOneTree};
    return {.category = category,
            .name = L"/ci/src/lib/a.c",
            .md5 = kMd5OfRight,
            .suggestion = m_tree.path("high/app.exe"),
            .answer = m_tree.path("low/src/lib/a.c"),
            .isInOneTree = isInOneTree};
  }

  TempTree m_tree;
  Question m_question;

 private:
  ScopedVariable m_symbolPath{"_NT_SYMBOL_PATH"};
  const PAKU_3_1::internal::IndexSettings m_former = PAKU_3_1::internal::indexSettings();
};

struct Kind {
  const char* title;
  search_category_t category;
  IndexUse use;
};

void PrintTo(const Kind& kind, std::ostream* out) {
  *out << kind.title;
}

class CategoryAllocationFaultsPosix : public LookupAllocationFaultsPosix,
                                      public testing::WithParamInterface<Kind> {
 protected:
  void SetUp() override {
    LookupAllocationFaultsPosix::SetUp();
    use(GetParam().use);
    const bool isByIndex = GetParam().use == IndexUse::kFromFirstScan;
    m_question = question(GetParam().category, isByIndex);
    m_question.isIndexed = isByIndex && isTrusted();
  }

 private:
  /// Trees on other file systems are walked.
  bool isTrusted() const {
    const PAKU_3_1::internal::FileDescriptor tree(
        open(NativePath(m_tree.root()).get().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return PAKU_3_1::internal::notifiesOfChanges(tree.get());
  }
};

TEST_P(CategoryAllocationFaultsPosix, EndALookup) {
  expectNoHarm(lookup());
}

TEST_P(CategoryAllocationFaultsPosix, EndTheFirstLookupOfAProcess) {
  expectNoHarmInNewProcess(lookup());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds,
    CategoryAllocationFaultsPosix,
    testing::Values(Kind{"BinariesWalking", scBinaryFiles, IndexUse::kNever},
                    Kind{"SymbolsWalking", scSymbolFiles, IndexUse::kNever},
                    Kind{"SourcesWalking", scSourceFiles, IndexUse::kNever},
                    Kind{"BinariesByIndex", scBinaryFiles, IndexUse::kFromFirstScan},
                    Kind{"SymbolsByIndex", scSymbolFiles, IndexUse::kFromFirstScan},
                    Kind{"SourcesByIndex", scSourceFiles, IndexUse::kFromFirstScan}),
    [](const auto& row) { return std::string(row.param.title); });

TEST_F(LookupAllocationFaultsPosix, EndALookupThatFindsNothing) {
  m_question = {
      .category = scSourceFiles, .name = L"/ci/nowhere.c", .binary = m_tree.path("bin/app.exe")};
  expectNoHarm(lookup());
}

/// The index is there and has to take in a change.
class ChangedTree final : public Lookup {
 public:
  ChangedTree(TempTree& tree, const Question& question) : Lookup(tree, question) {
    std::filesystem::remove_all(NativePath(tree.path("low/changed")).get());
    EXPECT_EQ(pathOf(m_searcher.ask(m_question)), L"");
    tree.addFile("low/changed/deep/new.c", "new");
  }
};

TEST_F(LookupAllocationFaultsPosix, EndALookupInATreeThatHasChanged) {
  use(IndexUse::kFromFirstScan);
  m_question = {.category = scSourceFiles,
                .name = L"/ci/new.c",
                .answer = m_tree.path("low/changed/deep/new.c"),
                .isInOneTree = true};
  const std::size_t before = TreeRegistry::instance().counts().answered;
  expectNoHarm([this] { return std::make_unique<ChangedTree>(m_tree, m_question); });
  EXPECT_GT(TreeRegistry::instance().counts().answered, before) << "no index on this file system";
}

/// What began for the journal has ended, also when the lookup is broken off.
class JournaledLookup final : public Lookup {
 public:
  JournaledLookup(const TempTree& tree, const Question& question, CountingJournal& journal)
      : Lookup(tree, question, &journal), m_journal(journal) {}

  void expectSound(bool hasThrown) override {
    EXPECT_EQ(m_journal.m_open, 0);
    Lookup::expectSound(hasThrown);
  }

 private:
  CountingJournal& m_journal;
};

TEST_F(LookupAllocationFaultsPosix, EndALookupWithAJournal) {
  CountingJournal journal;
  m_question = question(scSourceFiles);
  expectNoHarm([&] { return std::make_unique<JournaledLookup>(m_tree, m_question, journal); });
  EXPECT_GT(journal.m_steps, 0);
}

/// All four callbacks; they stay installed.
class LookupWithCallbacks final : public Lookup {
 public:
  LookupWithCallbacks(const TempTree& tree, const Question& question, bool isStubborn, int files)
      : Lookup(tree, question),
        m_started(question.suggestion),
        m_found(isStubborn),
        m_files(files) {
    m_searcher.m_env->setSearchStartedCallback(&m_started);
    m_searcher.m_env->setFilesFoundCallback(&m_found);
    m_searcher.m_env->setNoFilesFoundCallback(&m_notFound);
    m_searcher.m_env->setConfidenceLevelPolicyCallback(&m_policy);
  }

  void expectSound(bool hasThrown) override {
    if (!hasThrown) {
      EXPECT_EQ(m_found.m_count, m_files);
    }
    Lookup::expectSound(hasThrown);
  }
  void expectUsable() override {
    Lookup::expectUsable();
    EXPECT_EQ(m_found.m_count, m_files);
  }

 private:
  SuggestingSearchStarted m_started;
  LastFilesFound m_found;
  ForgivingNoFilesFound m_notFound;
  TrustingPolicy m_policy;
  const int m_files;
};

TEST_F(LookupAllocationFaultsPosix, EndALookupWithCallbacks) {
  m_question = question(scSourceFiles);
  m_question.md5 = nullptr;
  m_question.answer = m_tree.path("low/other/lib/A.c");
  expectNoHarm([&] { return std::make_unique<LookupWithCallbacks>(m_tree, m_question, false, 4); });
}

TEST_F(LookupAllocationFaultsPosix, LeaveACallbackThatGoesOnWithEachFileOnce) {
  m_question = question(scSourceFiles);
  m_question.md5 = nullptr;
  m_question.answer = m_tree.path("low/other/lib/A.c");
  expectNoHarm([&] { return std::make_unique<LookupWithCallbacks>(m_tree, m_question, true, 4); });
}

TEST_F(LookupAllocationFaultsPosix, LeaveRejectedFilesOfACallbackThatGoesOnSound) {
  m_question = question(scSourceFiles);
  expectNoHarm([&] { return std::make_unique<LookupWithCallbacks>(m_tree, m_question, true, 1); });
}

/// Suggests by mappings: one is refuted, one learned from the answer, and one has no part in it.
class MappedLookup final : public Lookup {
 public:
  MappedLookup(const TempTree& tree, const Question& question) : Lookup(tree, question) {
    m_mappings->learn(L"/one/lib/a.c", L"/elsewhere/lib/a.c");
    m_mappings->learn(L"/ci/src/lib/a.c", tree.path("high/src/lib/a.c").c_str());
    m_mappings->learn(L"/two/lib/a.c", L"/elsewhere/lib/a.c");
    m_mappings->addMapping(L"/three", L"/elsewhere");
    m_searcher.m_env->setSearchStartedCallback(m_mappings->getSearchStartedCallback());
    m_searcher.m_env->setFilesFoundCallback(m_mappings->getFilesFoundCallback());
    m_searcher.m_env->setNoFilesFoundCallback(m_mappings->getNoFilesFoundCallback());
  }

  void expectSound(bool hasThrown) override {
    int others = 0;
    for (std::int32_t i = 0; i < m_mappings->getMappingCount(); ++i) {
      const ObjectPtr<IPathMapping> mapping = m_mappings->getMapping(i);
      if (std::wstring(mapping->getRecordedPrefix()) == L"/ci")
        continue;
      EXPECT_STREQ(mapping->getLocalPrefix(), L"/elsewhere");
      ++others;
    }
    EXPECT_EQ(others, 3);
    Lookup::expectSound(hasThrown);
  }
  void expectUsable() override {
    Lookup::expectUsable();
    EXPECT_EQ(m_mappings->getMappingCount(), 4);
  }

 private:
  ObjectPtr<IPathMappings> m_mappings = IPathMappings::create();
};

TEST_F(LookupAllocationFaultsPosix, EndALookupThatLearnsMappings) {
  m_question = question(scSourceFiles);
  expectNoHarm([this] { return std::make_unique<MappedLookup>(m_tree, m_question); });
}

TEST_F(LookupAllocationFaultsPosix, EndALookupThatIsTraced) {
  m_question = question(scSymbolFiles);
  internal::traceChannel().switchForTest(true);
  testing::internal::CaptureStderr();
  expectNoHarm(lookup());
  internal::traceChannel().switchForTest(false);
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace quiver_test
