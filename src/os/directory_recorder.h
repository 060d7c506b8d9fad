// Writes down the directories that routines add. For tests.

#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "search/file_search_strategy.h"

namespace quiver_test {

/// A directory and whether its tree counts too.
using RecordedDirectory = std::pair<std::wstring, bool>;

class DirectoryRecorder final : public QV_2_9::ISearchDirectoryContainer {
 public:
  bool addDirectory(const wchar_t* dir, bool recursive) override {
    m_added.emplace_back(dir, recursive);
    return accepts(dir);
  }
  void clear() override { m_added.clear(); }

  const std::vector<RecordedDirectory>& added() const { return m_added; }

  /// What `addDirectory` answers.
  std::function<bool(const std::wstring&)> accepts = [](const std::wstring&) { return true; };

 private:
  std::vector<RecordedDirectory> m_added;
};

/// Notes the candidates offered; accepts none.
class CandidateRecorder final : public QV_2_9::ISearchResultsContainer {
 public:
  bool addFoundFile(const wchar_t* path, std::uint32_t, bool& stop) override {
    stop = false;
    m_offered.emplace_back(path);
    return false;
  }

  const std::vector<std::wstring>& offered() const { return m_offered; }

 private:
  std::vector<std::wstring> m_offered;
};

}  // namespace quiver_test
