// The directories of a search, and what has been reported already.

#include "paku/file_search.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "paku/path_syntax.h"
#include "paku/search_name.h"
#include "paku/tree_index.h"
#include "paku/tree_search.h"

namespace PAKU_3_1 {

using Answer = internal::TreeIndex::Answer;

void FileSearch::addSearchDirectory(const Filename& directory, int depth, int /*reserved*/) {
  if (!directory.isEmpty())
    m_directories.push_back({directory.text().text(), depth});
}

void FileSearch::clearSearchDirectories() {
  m_directories.clear();
}

void FileSearch::find(const String& name, IFileScanCallback& callback) const {
  const PathStyle style = internal::systemPathStyle();
  std::optional<internal::SearchName> sought;  // taken apart once there is a place to look
  const auto tails = [&]() -> const std::vector<internal::Tail>& {
    if (!sought)
      sought.emplace(name.text(), style);
    return sought->tails();
  };
  internal::TreeIndex index(tails);
  std::unordered_set<std::wstring> reported;
  const std::vector<SearchDirectory> directories = m_directories;  // the callback may change them
  for (auto it = directories.begin(); it != directories.end(); ++it) {
    if (std::find(directories.begin(), it, *it) != it)
      continue;  // a second time it has nothing new to report
    const internal::FoundBelow found = [&](const std::wstring& below) {
      const auto [path, isNew] = reported.insert(internal::pathUnder(it->path, style, below));
      return !isNew || callback.onFileFound(*path);
    };
    const Answer answer = index.search(it->path, it->depth, found);
    if (answer == Answer::kEnded)
      return;
    if (answer == Answer::kAll)
      continue;
    const internal::DirectoryTree tree(it->path);
    if (!tree.isOpen())
      continue;
    if (tails().empty() || !internal::TreeSearch(tree, tails(), found).run(it->depth))
      return;
  }
}

}  // namespace PAKU_3_1
