// Lookups of each category while system calls fail: by walking, with an index that is made
// meanwhile, and with one that has changes to take in.

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "paku/index_settings.h"
#include "paku/md5_memo.h"
#include "paku/tree_registry.h"

#include "fault/system_calls/faulty_runs.h"
#include "fault/system_calls/runs_tree.h"
#include "quiver/quiver.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace quiver_test {
namespace {

namespace fs = std::filesystem;
using namespace QV_2_9;
using PAKU_3_1::internal::IndexUse;
using PAKU_3_1::internal::Md5Memo;
using PAKU_3_1::internal::TreeRegistry;

constexpr std::size_t kMemory = std::size_t{16} << 20;
constexpr int kTimes = 25000;
constexpr const wchar_t* kMd5OfRight = L"ba76f70b460e5e5beb5c1718849c189c";
constexpr const char* kRight = "tree/b/c/src/app.x";

/// More than one read takes.
std::string rightContent() {
  constexpr std::string_view kText = "the right one";
  std::string content;
  for (int i = 0; i < kTimes; ++i) content += kText;
  return content;
}

/// How the lookup comes to know what a tree holds.
enum class Way { kWalk, kNewIndex, kKnownIndex };

struct Row {
  const char* title;
  search_category_t category;
  Way way;
};

void addDirectories(TempTree& tree) {
  static const std::string content = rightContent();
  for (const char* wrong : {"archive/app.x/1/app.x",
                            "flat/app.x",
                            "tree/app.x",
                            "tree/a/src/app.x",
                            "tree/b/c/src/APP.X",
                            "tree/b/src/app.x/file",
                            "tree/z/src/app.x"})
    tree.addFile(wrong, "of another build");
  tree.addFile("tree/b/other.x");
  tree.addLink("tree/b/link.d", "../a");
  tree.addLink("tree/c/app.x", "../z/src/app.x");
  tree.addFile(kRight, content);
}

class Lookup final : public FaultyCall {
 public:
  Lookup(const Row& row, const TempTree& tree) : m_row(row), m_shared(tree) {}

  void prepare() override {
    Md5Memo::instance().setRest(std::chrono::nanoseconds(0));
    if (m_row.way == Way::kKnownIndex)
      addDirectories(m_own.emplace());
    const bool hasIndex = m_row.way != Way::kWalk;
    PAKU_3_1::internal::setIndexSettings(
        {hasIndex ? IndexUse::kFromFirstScan : IndexUse::kNever, kMemory});
    makeSearch();
    if (m_row.way == Way::kKnownIndex)
      changeWhatIsKnown();
  }

  void ask() override {
    const ObjectPtr<IChecksum> recorded =
        IChecksumCalculator::create()->createChecksum(ctMD5, kMd5OfRight);
    ChecksumValidator check(m_row.category, recorded);
    m_file = nullptr;
    m_file = find(L"C:\\build\\src\\app.x", &check);
  }

  Answer answer() override {
    // What could not be read is offered as what it is: unconfirmed.
    if (!m_file || m_file->getConfidenceLevel() != 0)
      return Answer::kNothing;
    return m_file->getPath() == path(kRight) ? Answer::kRight : Answer::kWrong;
  }

  /// Who says that something is gone or closed to us has said so in a notice too.
  void recover(const FaultScript& script) override {
    if (script.error != ENOENT && script.error != EACCES)
      return;
    for (const auto& entry : fs::recursive_directory_iterator(NativePath(path("tree")).get()))
      if (entry.is_directory() && !entry.is_symlink())
        fs::permissions(entry.path(), fs::perms::owner_all);
  }

  std::string laterComplaint() override {
    if (m_row.way != Way::kWalk && TreeRegistry::instance().counts().trees == 0)
      return "no index afterwards";
    return {};
  }

  void release() override {
    TreeRegistry::instance().clear();
    m_file = nullptr;
    m_search = nullptr;
    m_own.reset();
  }

 private:
  std::wstring path(const char* name) const { return (m_own ? *m_own : m_shared).path(name); }

  void makeSearch() {
    const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
    dirs->addSearchDir(m_row.category, path("flat").c_str(), false, true);
    dirs->addSearchDir(m_row.category, path("missing").c_str(), true, true);
    // Debug files of the system may be many, and differ from machine to machine.
    const bool isBeforeSystem = m_row.category == scSymbolFiles;
    dirs->addSearchDir(m_row.category, path("tree").c_str(), true, isBeforeSystem);
    const ObjectPtr<IEditableSearchDirContainer> archives = IEditableSearchDirContainer::create();
    archives->addSearchDir(m_row.category, path("archive").c_str(), true, false);
    const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
    env->setSearchDirs(dirs);
    env->setArchiveSearchDirs(archives);
    m_search = IFileSearch::create(env);
  }

  ObjectPtr<IValidFile> find(const wchar_t* name, IValidatorCallback* check) {
    const wchar_t* const binary = L"/nowhere/bin/tool";  // looked around up to the root
    switch (m_row.category) {
      case scBinaryFiles:
        return m_search->findBinFile(name, check, nullptr);
      case scSymbolFiles:
        return m_search->findSymFile(name, binary, nullptr, check, nullptr, nullptr);
      default:
        return m_search->findSrcFile(name, binary, nullptr, check, nullptr);
    }
  }

  void changeWhatIsKnown() {
    const fs::path right = NativePath(path(kRight)).get();
    const fs::path away = NativePath(path("away")).get();
    fs::rename(right.parent_path(), away);
    find(L"nothing.x", nullptr);
    fs::rename(away, right.parent_path());
    std::ofstream(right.parent_path().parent_path() / "new.x") << "new";
    fs::remove(right.parent_path().parent_path() / "new.x");
  }

  const Row& m_row;
  const TempTree& m_shared;
  std::optional<TempTree> m_own;  // of a run that changes it
  ObjectPtr<IFileSearch> m_search;
  ObjectPtr<IValidFile> m_file;
};

class LookupFaultInjectionLinux : public testing::TestWithParam<Row> {
 protected:
  LookupFaultInjectionLinux() { addDirectories(m_tree.get()); }

  RunsTree m_tree;
  ScopedVariable m_path{"PATH"};
  ScopedVariable m_systemRoot{"SYSTEMROOT"};
  ScopedVariable m_symbolPath{"_NT_SYMBOL_PATH"};
};

TEST_P(LookupFaultInjectionLinux, AnswersRightOrNotAtAll) {
  Lookup lookup(GetParam(), m_tree.get());
  runWithFaults({GetParam().title}, lookup);
}

INSTANTIATE_TEST_SUITE_P(
    Ways,
    LookupFaultInjectionLinux,
    testing::Values(Row{"BinaryByWalking", scBinaryFiles, Way::kWalk},
                    Row{"SymbolsByWalking", scSymbolFiles, Way::kWalk},
                    Row{"SourceByWalking", scSourceFiles, Way::kWalk},
                    Row{"BinaryByNewIndex", scBinaryFiles, Way::kNewIndex},
                    Row{"SymbolsByNewIndex", scSymbolFiles, Way::kNewIndex},
                    Row{"SourceByNewIndex", scSourceFiles, Way::kNewIndex},
                    Row{"BinaryByKnownIndex", scBinaryFiles, Way::kKnownIndex},
                    Row{"SymbolsByKnownIndex", scSymbolFiles, Way::kKnownIndex},
                    Row{"SourceByKnownIndex", scSourceFiles, Way::kKnownIndex}),
    [](const auto& row) { return std::string(row.param.title); });

}  // namespace
}  // namespace quiver_test
