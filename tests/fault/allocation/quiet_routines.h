// A system without directories of its own: a lookup under test looks only where the test says.

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "os/os_common_routines.h"
#include "os/symbol_download.h"
#include "os/symbol_path.h"

namespace quiver_test {

/// In place of the system's own routines for as long as it lives. Symbol servers are asked.
class QuietRoutines final : public QV_2_9::OSCommonRoutines {
 public:
  QuietRoutines() { QV_2_9::internal::setOSSpecificRoutinesForTest(this); }
  ~QuietRoutines() { QV_2_9::internal::setOSSpecificRoutinesForTest(nullptr); }

  QuietRoutines(const QuietRoutines&) = delete;
  QuietRoutines& operator=(const QuietRoutines&) = delete;

  bool findByAbsoluteName(const wchar_t*, QV_2_9::ISearchResultsContainer&, std::int32_t) override {
    return false;
  }
  bool isSymbolServerPath(const wchar_t* path) override {
    return QV_2_9::internal::isSymbolServerElement(path);
  }
  std::wstring downloadSymbolFile(const wchar_t* binaryFile,
                                  const std::vector<std::wstring>& symbolPath,
                                  QV_2_9::ISymbolDownloadProgress* progress) override {
    return m_download.fetch(binaryFile, symbolPath, progress);
  }
  std::wstring downloadSymbolFileFromEnvironment(
      const wchar_t* binaryFile, QV_2_9::ISymbolDownloadProgress* progress) override {
    return m_download.fetchFromEnvironment(binaryFile, progress);
  }
  std::wstring mapFileName(const wchar_t* name, std::int32_t) override { return name; }

  void splitPathList(const wchar_t*, std::vector<std::wstring>&) override {}
  void addSystemBinaryDirs(QV_2_9::ISearchDirectoryContainer&) override {}
  void addCommonSystemDirs(QV_2_9::ISearchDirectoryContainer&) override {}
  void addDriverDirs(QV_2_9::ISearchDirectoryContainer&) override {}
  void addSymbolPathDirs(QV_2_9::ISearchDirectoryContainer& dirs) override {
    QV_2_9::internal::addSymbolPathElements(dirs);
  }

 private:
  QV_2_9::internal::SymbolDownload m_download;
};

}  // namespace quiver_test
