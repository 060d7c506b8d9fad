// What the benchmarks share: a search environment over one tree, and time.

#pragma once

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "quiver/quiver.h"

namespace quiver_benchmark {

using Microseconds = double;

template <class Work>
Microseconds timeOf(const Work& work) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point begin = Clock::now();
  work();
  return std::chrono::duration<Microseconds, std::micro>(Clock::now() - begin).count();
}

inline Microseconds median(std::vector<Microseconds> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

/// Returns a search over one directory that holds files of every category.
inline QV_2_9::ObjectPtr<QV_2_9::IFileSearch> searchIn(const std::wstring& directory,
                                                       bool recursive = true) {
  using namespace QV_2_9;
  const ObjectPtr<IEditableSearchDirContainer> dirs = IEditableSearchDirContainer::create();
  dirs->addSearchDir(scAllFiles, directory.c_str(), recursive, false);
  const ObjectPtr<IEditableSearchEnv> env = IEditableSearchEnv::create();
  env->setSearchDirs(dirs);
  return IFileSearch::create(env);
}

inline bool findSource(QV_2_9::IFileSearch& search,
                       const std::wstring& name,
                       const wchar_t* binary = L"") {
  return search.findSrcFile(name.c_str(), binary, L"", nullptr, nullptr).get() != nullptr;
}

}  // namespace quiver_benchmark
