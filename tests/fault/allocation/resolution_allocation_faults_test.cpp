// What is remembered of resolutions: contexts, histories, default callbacks, mappings, the archive.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "fault/allocation/allocation_faults.h"
#include "fault/allocation/quiet_callbacks.h"
#include "fault/allocation/quiet_routines.h"
#include "fault/archive_contents.h"
#include "quiver/quiver.h"
#include "support/temp_tree.h"

namespace quiver_test {
namespace {

using namespace QV_2_9;

constexpr const wchar_t* kKey = L"a key that does not fit into a short text";
constexpr const wchar_t* kFound = L"/found/where/the/path/is/rather/long.c";

std::wstring pathOf(const FilePtr& file) {
  return file ? file->getPath() : L"";
}

std::wstring pathOf(const ObjectPtr<IFileAssociation>& association) {
  return association && association->getPath() ? association->getPath() : L"";
}

class Remember final : public Attempt {
 public:
  Remember() { m_history->addSrcFileAssociation(L"/ci/a.c", L"", L"", L"/old"); }

  void run() override {
    m_history->addBinFileAssociation(L"/ci/app.exe", kFound);
    m_history->addSymFileAssociation(L"/ci/app.pdb", L"/ci/app.exe", L"0123", kFound);
    m_history->addSrcFileAssociation(L"/ci/a.c", L"", L"", kFound);
  }
  void expectSound(bool hasThrown) override {
    const std::wstring source = pathOf(m_history->findSrcFileAssociation(L"/ci/a.c", L"", L""));
    EXPECT_TRUE(source == kFound || (hasThrown && source == L"/old"));
    expectFoundOr(hasThrown, m_history->findBinFileAssociation(L"/ci/app.exe"));
    expectFoundOr(hasThrown,
                  m_history->findSymFileAssociation(L"/ci/app.pdb", L"/ci/app.exe", L"0123"));
  }
  void expectUsable() override {
    run();
    expectSound(false);
    m_history->clearAssociations(scBinaryFiles);
    EXPECT_FALSE(m_history->findBinFileAssociation(L"/ci/app.exe"));
  }

 private:
  static void expectFoundOr(bool mayBeMissing, const ObjectPtr<IFileAssociation>& association) {
    EXPECT_TRUE(pathOf(association) == kFound || (mayBeMissing && !association));
  }

  ObjectPtr<ISearchHistory> m_history = ISearchHistory::create();
};

TEST_F(AllocationFaultsPosix, EndRemembering) {
  expectNoHarm([] { return std::make_unique<Remember>(); });
}

/// Files everything that a context can have.
class FileAway final : public Attempt {
 public:
  explicit FileAway(const TempTree& tree) : m_tree(tree) {}

  void run() override {
    m_manager->setParentContext(m_child.get(), m_parent.get());
    m_manager->setSearchDirs(m_parent.get(), m_dirs, kKey);
    m_manager->setArchiveDir(m_child.get(), m_tree.path("archive").c_str());
    m_manager->setSearchStartedCallback(m_child.get(), kKey, &m_started);
    m_manager->setFilesFoundCallback(m_child.get(), kKey, &m_found);
    m_manager->setNoFilesFoundCallback(m_parent.get(), kKey, &m_notFound);
    m_manager->setConfidenceLevelPolicyCallback(m_parent.get(), kKey, &m_policy);
    m_manager->setConfidenceLevelPolicyCallback(m_parent.get(), kKey, nullptr);
    m_search = m_manager->createFileSearch(m_child.get(), kKey, nullptr);
  }
  void expectSound(bool) override {
    // Whatever has been filed, a search can be made of it.
    EXPECT_TRUE(m_manager->createFileSearch(m_child.get(), kKey, nullptr));
  }
  void expectUsable() override {
    run();
    EXPECT_EQ(pathOf(m_search->findBinFile(L"/ci/app.exe", nullptr, nullptr)),
              m_tree.path("low/app.exe"));
    const ObjectPtr<ISearchEnv> env = m_manager->createSearchEnv(m_child.get(), kKey, nullptr);
    EXPECT_EQ(env->getSearchStartedCallback().getCallback(), &m_started);
    EXPECT_EQ(env->getFilesFoundCallback().getCallback(), &m_found);
    EXPECT_EQ(env->getNoFilesFoundCallback().getCallback(), &m_notFound);
    EXPECT_EQ(env->getConfidenceLevelPolicyCallback().getCallback(), nullptr);
  }

 private:
  static ObjectPtr<IEditableSearchDirContainer> dirsIn(const TempTree& tree) {
    const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
    dirs->addSearchDir(scAllFiles, tree.path("low").c_str(), true, true);
    return dirs;
  }

  const TempTree& m_tree;
  QuietRoutines m_routines;
  const ObjectPtr<IEditableSearchDirContainer> m_dirs = dirsIn(m_tree);
  const ObjectPtr<IResolutionContextMgr> m_manager = IResolutionContextMgr::create();
  const ObjectPtr<IResolutionContext> m_child = m_manager->createContext(L"/a/result", true);
  const ObjectPtr<IResolutionContext> m_parent = m_manager->createContext(L"/a", true);
  SuggestingSearchStarted m_started{L""};
  LastFilesFound m_found;
  ForgivingNoFilesFound m_notFound;
  TrustingPolicy m_policy;
  ObjectPtr<IFileSearch> m_search;
};

TEST_F(AllocationFaultsPosix, EndFilingWhatAContextHas) {
  TempTree tree;
  tree.addFile("low/app.exe");
  expectNoHarm([&] { return std::make_unique<FileAway>(tree); });
}

class MakeContexts final : public Attempt {
 public:
  explicit MakeContexts(const TempTree& tree) : m_tree(tree) {}

  void run() override {
    m_user = m_manager->createUserContext();
    m_result = m_manager->getResultDirContext(m_tree.path("result").c_str());
  }
  void expectSound(bool hasThrown) override {
    if (m_user) {
      EXPECT_STREQ(m_user->getName(), m_userName.c_str());
    }
    EXPECT_TRUE(hasThrown || (m_user && m_result));
  }
  void expectUsable() override {
    run();
    expectSound(false);
    const ObjectPtr<IFileSearch> search =
        m_manager->createFileSearch(m_result.get(), nullptr, nullptr);
    EXPECT_EQ(pathOf(search->findBinFile(L"/ci/app.exe", nullptr, nullptr)),
              m_tree.path("result/binaries/app.exe"));
  }

 private:
  const TempTree& m_tree;
  QuietRoutines m_routines;
  const ObjectPtr<IResolutionContextMgr> m_manager = IResolutionContextMgr::create();
  const std::wstring m_userName = m_manager->createUserContext()->getName();
  ObjectPtr<IResolutionContext> m_user;
  ObjectPtr<IResolutionContext> m_result;
};

TEST_F(AllocationFaultsPosix, EndMakingContexts) {
  TempTree tree;
  tree.addFile("result/binaries/app.exe");
  expectNoHarm([&] { return std::make_unique<MakeContexts>(tree); });
}

/// A search with default callbacks, which remember its answer.
class Manipulate final : public Attempt {
 public:
  explicit Manipulate(const TempTree& tree) : m_tree(tree) {}

  void run() override {
    m_search = nullptr;
    m_manipulator = createSearchManipulatorByContext(m_context, nullptr, m_history);
    const ObjectPtr<IEditableSearchDirContainer> dirs = m_manipulator->getSearchDirContainer();
    dirs->addSearchDir(scAllFiles, m_tree.path("low").c_str(), true, true);
    m_manipulator->setSearchStartedMode(kKey, hmAdvisory);
    m_manipulator->setFilesFoundMode(kKey, hmAdvisory);
    m_manipulator->setFilesFoundUserCallback(kKey, &m_found);
    m_manipulator->setNoFilesFoundMode(kKey, hmAdvisory);
    m_manager->setSearchDirs(m_context.get(), dirs, kKey);
    m_search = m_manager->createFileSearch(m_context.get(), kKey, nullptr);
    m_answer = m_search->findSrcFile(L"/ci/a.c", nullptr, nullptr, nullptr, nullptr);
  }
  void expectSound(bool hasThrown) override {
    const std::wstring file = m_tree.path("low/a.c");
    EXPECT_TRUE(hasThrown || pathOf(m_answer) == file);
    const auto remembered = m_history->findSrcFileAssociation(L"/ci/a.c", L"", L"");
    EXPECT_TRUE(pathOf(remembered) == file || (hasThrown && !remembered));
    m_answer = nullptr;
  }
  void expectUsable() override {
    run();
    expectSound(false);
  }

 private:
  const TempTree& m_tree;
  QuietRoutines m_routines;
  const ObjectPtr<IResolutionContextMgr> m_manager = IResolutionContextMgr::create();
  const ObjectPtr<IResolutionContext> m_context = m_manager->createContext(L"/a/result", true);
  const ObjectPtr<ISearchHistory> m_history = ISearchHistory::create();
  LastFilesFound m_found;
  ObjectPtr<ISearchManipulator> m_manipulator;
  ObjectPtr<IFileSearch> m_search;
  FilePtr m_answer;
};

TEST_F(AllocationFaultsPosix, EndALookupThatIsRemembered) {
  TempTree tree;
  tree.addFile("low/a.c");
  expectNoHarm([&] { return std::make_unique<Manipulate>(tree); });
}

/// Rows of which one is confirmed, one refuted and one new.
class Map final : public Attempt {
 public:
  void run() override {
    m_mappings->addMapping(L"/hand", L"/local/by/hand");
    m_mappings->learn(L"/ci/one/lib/a.c", L"/local/one/lib/a.c");
    m_mappings->learn(L"/ci/two/lib/a.c", L"/local/two/lib/a.c");
    m_mappings->addMapping(L"/hand", L"/local/by/hand");
  }
  void expectSound(bool) override {
    for (std::int32_t i = 0; i < m_mappings->getMappingCount(); ++i)
      EXPECT_EQ(std::wstring(m_mappings->getMapping(i)->getLocalPrefix()).find(L"/local"), 0u);
  }
  void expectUsable() override {
    run();
    EXPECT_EQ(m_mappings->getMappingCount(), 2);
    EXPECT_STREQ(m_mappings->getMapping(0)->getLocalPrefix(), L"/local/by/hand");
    EXPECT_STREQ(m_mappings->getMapping(1)->getLocalPrefix(), L"/local");
  }

 private:
  ObjectPtr<IPathMappings> m_mappings = IPathMappings::create();
};

TEST_F(AllocationFaultsPosix, EndMappingPaths) {
  expectNoHarm([] { return std::make_unique<Map>(); });
}

class Archive final : public Attempt {
 public:
  explicit Archive(TempTree& tree) : m_tree(tree) {
    std::filesystem::remove_all(NativePath(tree.path("archive")).get());
    m_manager->setArchiveDir(m_context.get(), tree.path("archive").c_str());
  }

  void run() override {
    m_result = m_manager->archiveFile(m_context.get(), m_file.c_str(), scBinaryFiles);
  }
  void expectSound(bool hasThrown) override {
    EXPECT_TRUE(hasThrown || m_result == arArchived);
    const ArchiveContents found = contentsOf(m_tree.path("archive"));
    EXPECT_TRUE(found.whole.size() == 1 || (hasThrown && found.whole.empty()));
    EXPECT_TRUE(found.wrong.empty());
    EXPECT_TRUE(found.others.empty());
  }
  void expectUsable() override {
    run();
    EXPECT_TRUE(m_result == arArchived || m_result == arAlreadyArchived);
    m_result = arArchived;
    expectSound(false);
  }

 private:
  TempTree& m_tree;
  const std::wstring m_file = m_tree.path("bin/app.dll");
  const ObjectPtr<IResolutionContextMgr> m_manager = IResolutionContextMgr::create();
  const ObjectPtr<IResolutionContext> m_context = m_manager->createContext(L"/a/result", true);
  archive_result_t m_result = arNoArchiveDir;
};

TEST_F(AllocationFaultsPosix, EndArchivingAFile) {
  TempTree tree;
  tree.addFile("bin/app.dll", std::string(100000, 'x'));
  expectNoHarm([&] { return std::make_unique<Archive>(tree); });
}

}  // namespace
}  // namespace quiver_test
