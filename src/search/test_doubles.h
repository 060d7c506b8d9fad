// Stand-ins for what surrounds a search, for the tests of this folder.

#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "os/os_specific_routines.h"
#include "search/file_search_strategy.h"

namespace QV_2_9::internal {

struct Candidate {
  std::wstring path;
  std::uint32_t step;
  bool operator==(const Candidate&) const = default;
};

/// Notes what is offered. Answers "new valid file" unless told otherwise.
class RecordingResults final : public ISearchResultsContainer {
 public:
  std::vector<Candidate> candidates;
  std::wstring stopAt;
  bool answer = true;

  bool addFoundFile(const wchar_t* path, std::uint32_t step, bool& stop) override {
    candidates.push_back({path, step});
    stop = stopAt == path;
    return answer;
  }
};

/// Operating-system routines that know only what a test tells them; in place of the system's own
/// for as long as they live. Several threads may ask at once; what was noted is read afterwards.
class ScriptedRoutines final : public IOSSpecificRoutines {
 public:
  ScriptedRoutines() { setOSSpecificRoutinesForTest(this); }
  ~ScriptedRoutines() { setOSSpecificRoutinesForTest(nullptr); }

  std::vector<std::wstring> calls;
  std::vector<std::pair<std::wstring, bool>> systemDirs;
  std::function<std::wstring(const std::wstring&)> map = [](const std::wstring& n) { return n; };
  std::wstring absoluteCandidate;
  std::wstring download;
  std::wstring environmentDownload;
  ISymbolDownloadProgress* progressSeen = nullptr;

  bool findByAbsoluteName(const wchar_t* name,
                          ISearchResultsContainer& results,
                          std::int32_t osType) override {
    note(L"findByAbsoluteName(" + std::wstring(name) + L", " + std::to_wstring(osType) + L")");
    bool stop = false;
    return !absoluteCandidate.empty() && results.addFoundFile(absoluteCandidate.c_str(), 3, stop);
  }
  void addBinSystemDirs(ISearchDirectoryContainer& dirs) override { addDirs(L"Bin", dirs); }
  void addSymSystemDirs(ISearchDirectoryContainer& dirs) override { addDirs(L"Sym", dirs); }
  void addSrcSystemDirs(ISearchDirectoryContainer& dirs) override { addDirs(L"Src", dirs); }
  bool isSymbolServerPath(const wchar_t* path) override {
    return std::wstring(path).starts_with(L"srv*");
  }
  std::wstring downloadSymbolFile(const wchar_t* binaryFile,
                                  const std::vector<std::wstring>& symbolPath,
                                  ISymbolDownloadProgress* progress) override {
    std::wstring call = L"download(" + std::wstring(binaryFile);
    for (const std::wstring& element : symbolPath) call += L", " + element;
    note(call + L")");
    progressSeen = progress;
    return download;
  }
  std::wstring downloadSymbolFileFromEnvironment(const wchar_t* binaryFile,
                                                 ISymbolDownloadProgress* progress) override {
    note(L"downloadFromEnvironment(" + std::wstring(binaryFile) + L")");
    progressSeen = progress;
    return environmentDownload;
  }
  std::wstring mapFileName(const wchar_t* name, std::int32_t osType) override {
    note(L"mapFileName(" + std::wstring(name) + L", " + std::to_wstring(osType) + L")");
    return map(name);
  }

 private:
  void note(const std::wstring& call) {
    const std::lock_guard guard(m_noting);
    calls.push_back(call);
  }
  void addDirs(const wchar_t* category, ISearchDirectoryContainer& dirs) {
    note(std::wstring(L"add") + category + L"SystemDirs");
    for (const auto& [dir, recursive] : systemDirs) dirs.addDirectory(dir.c_str(), recursive);
  }

  std::mutex m_noting;
};

}  // namespace QV_2_9::internal
