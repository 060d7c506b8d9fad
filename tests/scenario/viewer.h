// A viewer as far as lookups go: search directories, an environment, a file search, and an empty
// PATH, SYSTEMROOT and symbol path, so that nothing of this machine answers.

#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "quiver/quiver.h"
#include "support/scoped_environment.h"
#include "support/temp_tree.h"

namespace quiver_test {

class Viewer : public testing::Test {
 protected:
  Viewer() {
    m_env->setSearchDirs(m_dirs);
    m_env->setArchiveSearchDirs(m_archives);
  }

  QV_2_9::ObjectPtr<QV_2_9::IValidFile> findBin(const std::wstring& name,
                                                QV_2_9::IValidatorCallback* check = nullptr) {
    return m_search->findBinFile(name.c_str(), check, nullptr);
  }
  QV_2_9::ObjectPtr<QV_2_9::IValidFile> findSym(const std::wstring& name,
                                                const std::wstring& binary,
                                                QV_2_9::IValidatorCallback* check = nullptr) {
    return m_search->findSymFile(name.c_str(), binary.c_str(), nullptr, check, nullptr, nullptr);
  }
  QV_2_9::ObjectPtr<QV_2_9::IValidFile> findSrc(const std::wstring& name,
                                                const std::wstring& binary = L"",
                                                QV_2_9::IValidatorCallback* check = nullptr) {
    return m_search->findSrcFile(name.c_str(), binary.c_str(), nullptr, check, nullptr);
  }
  /// Returns the MD5 that a recording would hold of `path`.
  QV_2_9::ObjectPtr<QV_2_9::IChecksum> recordedChecksum(const std::wstring& path) {
    return QV_2_9::IChecksumCalculator::create()->calculate(path.c_str(), QV_2_9::ctMD5);
  }

  TempTree m_tree;
  ScopedVariable m_path{"PATH"};
  ScopedVariable m_systemRoot{"SYSTEMROOT"};
  ScopedVariable m_symbolPath{"_NT_SYMBOL_PATH"};
  QV_2_9::ObjectPtr<QV_2_9::IEditableSearchDirContainer> m_dirs =
      QV_2_9::IEditableSearchDirContainer::create();
  QV_2_9::ObjectPtr<QV_2_9::IEditableSearchDirContainer> m_archives =
      QV_2_9::IEditableSearchDirContainer::create();
  QV_2_9::ObjectPtr<QV_2_9::IEditableSearchEnv> m_env = QV_2_9::IEditableSearchEnv::create();
  QV_2_9::ObjectPtr<QV_2_9::IFileSearch> m_search = QV_2_9::IFileSearch::create(m_env);
};

}  // namespace quiver_test
