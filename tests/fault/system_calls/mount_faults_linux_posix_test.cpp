// A tree with another file system in it gets no index, whatever fails while that is found out: the
// notices of the tree say nothing of the other's changes.

#include <string>

#include <gtest/gtest.h>

#include "paku/file_search.h"
#include "paku/index_settings.h"
#include "paku/tree_registry.h"

#include "fault/scoped_file_system.h"
#include "fault/system_calls/faulty_runs.h"
#include "fault/system_calls/runs_tree.h"

namespace quiver_test {
namespace {

using namespace PAKU_3_1;
using internal::IndexUse;
using internal::TreeRegistry;

class FirstFound final : public IFileScanCallback {
 public:
  bool onFileFound(const String& path) override {
    m_path = path.text();
    return false;
  }

  std::wstring m_path;
};

class SearchAboveAMount final : public FaultyCall {
 public:
  explicit SearchAboveAMount(const TempTree& tree) : m_tree(tree) {}

  void prepare() override {
    internal::setIndexSettings({IndexUse::kFromFirstScan, std::size_t{1} << 20});
  }

  void ask() override {
    m_found = FirstFound();
    FileSearch search;
    search.addSearchDirectory(Filename(m_tree.path("root")), -1, 0);
    search.find(L"x.c", m_found);
  }

  Answer answer() override {
    if (m_found.m_path.empty())
      return Answer::kNothing;
    return m_found.m_path == m_tree.path("root/disk/x.c") ? Answer::kRight : Answer::kWrong;
  }

  std::string complaint(const FaultScript&) override { return laterComplaint(); }
  std::string laterComplaint() override {
    return TreeRegistry::instance().counts().trees == 0 ? "" : "an index";
  }
  void release() override { TreeRegistry::instance().clear(); }

 private:
  const TempTree& m_tree;
  FirstFound m_found;
};

TEST(IndexFaultInjectionLinux, IsNeverMadeAboveAMount) {
  RunsTree tree;
  tree.get().addDirectory("root/disk");
  const ScopedFileSystem disk(tree.get().path("root/disk"), "size=1m");
  if (!disk.refusal().empty())
    GTEST_SKIP() << disk.refusal();
  tree.get().addFile("root/disk/x.c");
  SearchAboveAMount search(tree.get());
  runWithFaults({"AboveAMount"}, search);
}

}  // namespace
}  // namespace quiver_test
