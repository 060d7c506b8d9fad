// The directories of a search, and what has been reported already.

#include "paku/file_search.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "paku/file_info.h"
#include "paku/path_syntax.h"
#include "paku/search_name.h"
#include "paku/tree_index.h"
#include "paku/tree_search.h"

namespace PAKU_3_1 {

namespace {

using Answer = internal::TreeIndex::Answer;
using State = ScannedDirectory::State;

/// What the search of one directory came to.
struct Served {
  State state = State::kSearched;
  bool isFromIndex = false;
  std::uint64_t entries = 0;
};

/// One search through all its directories.
class Search final {
 public:
  Search(const String& name, IFileScanCallback& callback)
      : m_name(name), m_callback(callback), m_index([this]() -> const auto& { return tails(); }) {}

  Served serve(const std::wstring& path, int depth) {
    std::uint64_t yielded = 0;
    const internal::FoundBelow found = [&](const std::wstring& below) {
      ++yielded;
      const auto [whole, isNew] = m_reported.insert(internal::pathUnder(path, m_style, below));
      return !isNew || m_callback.onFileFound(*whole);
    };
    const Answer answer = m_index.search(path, depth, found);
    if (answer != Answer::kUnknown)
      return {answer == Answer::kAll ? State::kSearched : State::kEnded, true, yielded};
    const internal::DirectoryTree tree(path);
    if (!tree.isOpen())
      return {State::kUnreadable};
    if (tails().empty())
      return {State::kNotSearched};
    const bool goesOn = internal::TreeSearch(tree, tails(), found).run(depth);
    m_index.walked(tree.entriesRead());
    return {goesOn ? State::kSearched : State::kEnded, false, tree.entriesRead()};
  }

 private:
  /// The name is taken apart once there is a place to look.
  const std::vector<internal::Tail>& tails() {
    if (!m_sought)
      m_sought.emplace(m_name.text(), m_style);
    return m_sought->tails();
  }

  const PathStyle m_style = internal::systemPathStyle();
  const String& m_name;
  IFileScanCallback& m_callback;
  std::optional<internal::SearchName> m_sought;
  internal::TreeIndex m_index;
  std::unordered_set<std::wstring> m_reported;
};

/// What cannot be searched is told apart only for those who want to know.
bool isDirectory(const String& path) {
  FileInfo info;
  return fileInfo(Filename(path, 0, false), 0, info) == 0 && info.isDirectory;
}

void tell(IScanWatcher& watcher, const std::wstring& directory, int depth, Served served) {
  const String path(directory);
  const bool isSearched = served.state == State::kSearched || served.state == State::kUnreadable;
  if (isSearched && served.entries == 0 && !isDirectory(path))
    served = {State::kMissing};
  watcher.onDirectory({path, depth, served.state, served.isFromIndex, served.entries});
}

}  // namespace

void FileSearch::addSearchDirectory(const Filename& directory, int depth, int /*reserved*/) {
  if (!directory.isEmpty())
    m_directories.push_back({directory.text().text(), depth});
}

void FileSearch::clearSearchDirectories() {
  m_directories.clear();
}

void FileSearch::find(const String& name,
                      IFileScanCallback& callback,
                      IScanWatcher* watcher) const {
  const std::vector<SearchDirectory> directories = m_directories;  // the callback may change them
  Search search(name, callback);
  bool isOver = false;
  for (auto it = directories.begin(); it != directories.end(); ++it) {
    Served served;
    if (isOver)
      served.state = State::kNotSearched;
    else if (std::find(directories.begin(), it, *it) != it)
      served.state = State::kRepeated;  // it has nothing new to report
    else
      served = search.serve(it->path, it->depth);
    isOver = isOver || served.state == State::kEnded || served.state == State::kNotSearched;
    if (watcher)
      tell(*watcher, it->path, it->depth, served);
    else if (isOver)
      return;
  }
}

}  // namespace PAKU_3_1
