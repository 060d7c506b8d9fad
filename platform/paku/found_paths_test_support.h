// Collects what a search finds in a tree.

#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "paku/file_search.h"
#include "paku/path_style.h"
#include "paku/tree_search.h"

#include "support/temp_tree.h"

namespace PAKU_3_1::internal {

class FoundPaths final : public IFileScanCallback {
 public:
  explicit FoundPaths(std::size_t limit = SIZE_MAX) : m_limit(limit) {}

  bool onFileFound(const String& path) override {
    m_paths.push_back(path.text());
    return m_paths.size() < m_limit;
  }

  const std::vector<std::wstring>& paths() const { return m_paths; }

 private:
  std::size_t m_limit;
  std::vector<std::wstring> m_paths;
};

/// Returns the files called `name` in the tree, as paths below its root, with '/'
/// between their components.
inline std::vector<std::wstring> findIn(const quiver_test::TempTree& tree,
                                        const std::wstring& name,
                                        int depth = kWholeTree,
                                        std::size_t limit = SIZE_MAX) {
  FileSearch search;
  search.addSearchDirectory(Filename(tree.root()), depth, 0);
  FoundPaths found(limit);
  search.find(name, found);
  std::vector<std::wstring> below;
  for (const std::wstring& path : found.paths()) {
    below.push_back(path.substr(tree.root().size() + 1));
    std::ranges::replace(below.back(), separatorOf(systemPathStyle()), L'/');
  }
  return below;
}

}  // namespace PAKU_3_1::internal
