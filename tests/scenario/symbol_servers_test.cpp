// Symbol files behind symbol servers: named among the search directories and in the symbol path,
// fetched by the module that lies beside the library.

#include <filesystem>
#include <fstream>
#include <functional>

#include <gmock/gmock.h>

#include "scenario/viewer.h"
#include "support/matchers.h"

namespace QV_2_9 {
namespace {

using quiver_test::IsValidFile;

class SymbolServers : public quiver_test::Viewer {
 protected:
  SymbolServers() {
    m_tree.addDirectory("store/.build-id");
    std::ifstream file(realFile("hello.id"));
    std::string id;
    file >> id;
    m_place = ".build-id/" + id.substr(0, 2) + "/" + id.substr(2) + ".debug";
    m_tree.addFile("store/" + m_place);
    std::filesystem::copy_file(realFile("hello.debug"),
                               quiver_test::NativePath(m_tree.path("store/" + m_place)).get(),
                               std::filesystem::copy_options::overwrite_existing);
  }

  static std::filesystem::path realFile(const char* name) {
    return std::filesystem::path(SYMSRV_REAL_FILES) / name;
  }
  std::wstring element() const {
    return L"srv*" + m_tree.path("cache") + L"*" + m_tree.path("store");
  }
  ObjectPtr<IValidFile> find() {
    return findSym(L"other.pdb", quiver_test::toWide(realFile("hello")));
  }

  std::string m_place;
};

TEST_F(SymbolServers, AmongTheSearchDirectoriesAreAskedInTheirStep) {
  m_dirs->addSearchDir(scSymbolFiles, element().c_str(), false, true);
  EXPECT_THAT(find(), IsValidFile(m_tree.path("cache/" + m_place), 1, 2));
}

TEST_F(SymbolServers, OfLowPriorityAreAskedLast) {
  m_dirs->addSearchDir(scSymbolFiles, element().c_str(), false, false);
  EXPECT_THAT(find(), IsValidFile(m_tree.path("cache/" + m_place), 1, 6));
}

TEST_F(SymbolServers, InTheSymbolPathAreAskedWithTheSystemsDirectories) {
  quiver_test::ScopedVariable path("_NT_SYMBOL_PATH", element());
  EXPECT_THAT(find(), IsValidFile(m_tree.path("cache/" + m_place), 1, 4));
}

/// Looks for something whenever a download begins.
class CuriousProgress final : public ISymbolDownloadProgress {
 public:
  explicit CuriousProgress(std::function<void()> look) : m_look(std::move(look)) {}

  void start(std::int32_t) override { m_look(); }
  void progress(std::int32_t) override {}
  void finish() override { ++m_finished; }
  bool isCanceled() override { return false; }

  int m_finished = 0;

 private:
  std::function<void()> m_look;
};

TEST_F(SymbolServers, AreAskedOnceMoreByAProgressObjectWithoutWaitingForItself) {
  m_dirs->addSearchDir(scSymbolFiles, element().c_str(), false, true);
  ObjectPtr<IValidFile> nested;
  CuriousProgress progress([&] { nested = find(); });
  const std::wstring binary = quiver_test::toWide(realFile("hello"));
  const ObjectPtr<IValidFile> file =
      m_search->findSymFile(L"other.pdb", binary.c_str(), nullptr, nullptr, nullptr, &progress);
  EXPECT_THAT(file, IsValidFile(m_tree.path("cache/" + m_place), 1, 2));
  EXPECT_THAT(nested, IsValidFile(m_tree.path("cache/" + m_place), 1, 2));
  EXPECT_EQ(progress.m_finished, 1);
}

TEST_F(SymbolServers, ThatDoNotHaveTheFileLeaveTheSearchToGoOn) {
  m_dirs->addSearchDir(scSymbolFiles, (L"srv*" + m_tree.path("nothing")).c_str(), false, true);
  m_dirs->addSearchDir(scSymbolFiles, m_tree.path("plain").c_str(), false, false);
  const std::wstring plain = m_tree.addFile("plain/other.pdb");
  EXPECT_THAT(find(), IsValidFile(plain, 1, 6));
}

}  // namespace
}  // namespace QV_2_9
