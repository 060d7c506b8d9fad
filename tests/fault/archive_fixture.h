// An archive that stands in a directory "disk", and files to put into it.

#pragma once

#include <string>

#include <gtest/gtest.h>

#include "fault/archive_contents.h"
#include "quiver/resolution_context.h"
#include "support/temp_tree.h"

namespace quiver_test {

class FaultyArchive : public testing::Test {
 protected:
  FaultyArchive() {
    m_tree.addDirectory("disk");
    m_context = m_manager->createContext(m_tree.root().c_str(), true);
    m_manager->setArchiveDir(m_context.get(), archiveDir().c_str());
  }

  std::wstring archiveDir() const { return m_tree.path("disk/archive"); }
  QV_2_9::archive_result_t archive(const std::wstring& file) const {
    return m_manager->archiveFile(m_context.get(), file.c_str(), QV_2_9::scBinaryFiles);
  }
  ArchiveContents contents() const { return contentsOf(archiveDir()); }

  /// Expects `whole` archived files and nothing else.
  void expectOnlyWhole(std::size_t whole) const {
    const ArchiveContents found = contents();
    EXPECT_EQ(found.whole.size(), whole);
    EXPECT_EQ(found.wrong, std::vector<std::filesystem::path>());
    EXPECT_EQ(found.others, std::vector<std::filesystem::path>());
  }

  TempTree m_tree;
  QV_2_9::ObjectPtr<QV_2_9::IResolutionContextMgr> m_manager =
      QV_2_9::IResolutionContextMgr::create();
  QV_2_9::ObjectPtr<QV_2_9::IResolutionContext> m_context;
};

}  // namespace quiver_test
