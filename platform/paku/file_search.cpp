// The directories of a search, and what has been reported already.

#include "paku/file_search.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "paku/path_syntax.h"
#include "paku/search_name.h"
#include "paku/tree_search.h"

namespace PAKU_3_1 {

void FileSearch::addSearchDirectory(const Filename& directory, int depth, int /*reserved*/) {
  if (!directory.isEmpty())
    m_directories.push_back({directory.text().text(), depth});
}

void FileSearch::clearSearchDirectories() {
  m_directories.clear();
}

void FileSearch::find(const String& name, IFileScanCallback& callback) const {
  const PathStyle style = internal::systemPathStyle();
  const internal::SearchName sought(name.text(), style);
  if (sought.tails().empty())
    return;
  std::unordered_set<std::wstring> reported;
  const std::vector<SearchDirectory> directories = m_directories;  // the callback may change them
  for (auto it = directories.begin(); it != directories.end(); ++it) {
    if (std::find(directories.begin(), it, *it) != it)
      continue;  // a second time it has nothing new to report
    const internal::FoundBelow found = [&](const std::wstring& below) {
      const auto [path, isNew] = reported.insert(internal::pathUnder(it->path, style, below));
      return !isNew || callback.onFileFound(*path);
    };
    if (!internal::TreeSearch(it->path, sought.tails(), found).run(it->depth))
      return;
  }
}

}  // namespace PAKU_3_1
