// Archiving while system calls fail, with the kernel copying and by hand.

#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "fault/archive_contents.h"
#include "fault/system_calls/faulty_runs.h"
#include "fault/system_calls/runs_tree.h"
#include "quiver/resolution_context.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace quiver_test {
namespace {

using namespace QV_2_9;

constexpr std::size_t kSize = 600000;  // more than one read takes

std::string textOf(const std::vector<std::filesystem::path>& files) {
  std::string text;
  for (const std::filesystem::path& file : files) text += " " + file.string();
  return text;
}

class Archiving final : public FaultyCall {
 public:
  void prepare() override {
    m_tree.emplace();
    m_file = m_tree->addFile("app.dll", std::string(kSize, 'a'));
    m_context = m_manager->createContext(m_tree->root().c_str(), true);
    m_manager->setArchiveDir(m_context.get(), m_tree->path("archive").c_str());
  }

  void ask() override {
    m_result = m_manager->archiveFile(m_context.get(), m_file.c_str(), scBinaryFiles);
  }

  Answer answer() override {
    const bool isDone = m_result == arArchived || m_result == arAlreadyArchived;
    return isDone ? Answer::kRight : Answer::kNothing;
  }

  std::string complaint(const FaultScript& script) override {
    const ArchiveContents contents = contentsOf(m_tree->path("archive"));
    if (!contents.wrong.empty())
      return "a wrong file:" + textOf(contents.wrong);
    // What cannot be removed stays.
    if (!contents.others.empty() && script.struckRemovals == 0)
      return "left behind:" + textOf(contents.others);
    if (m_result == arArchived && contents.whole.size() != 1)
      return "said to be archived, and is not";
    return {};
  }

  std::string laterComplaint() override {
    const ArchiveContents contents = contentsOf(m_tree->path("archive"));
    return contents.wrong.empty() && contents.whole.size() == 1 ? "" : "not archived afterwards";
  }

  void release() override {
    m_context = nullptr;
    m_tree.reset();
  }

 private:
  ObjectPtr<IResolutionContextMgr> m_manager = IResolutionContextMgr::create();
  ObjectPtr<IResolutionContext> m_context;
  std::optional<TempTree> m_tree;
  std::wstring m_file;
  archive_result_t m_result = arCopyFailed;
};

class ArchiveFaultInjectionLinux : public testing::Test {
 protected:
  RunsTree m_tree;
};

TEST_F(ArchiveFaultInjectionLinux, TheKernelsCopyIsWholeOrNotThere) {
  Archiving archiving;
  runWithFaults({"TheKernelsCopy"}, archiving);
}

TEST_F(ArchiveFaultInjectionLinux, ACopyByHandIsWholeOrNotThere) {
  Archiving archiving;
  FaultyRuns runs{"ACopyByHand"};
  runs.copiesByHand = true;
  runWithFaults(runs, archiving);
}

}  // namespace
}  // namespace quiver_test
