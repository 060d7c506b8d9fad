// Looks for a file name in directories and trees.
//
// A name that was recorded elsewhere rarely has the same directories here, so every tail of it is
// looked for, the longest first: "work\proj\x.cpp" as work/proj/x.cpp, proj/x.cpp and x.cpp (see
// search_name.h). Names are compared as they are; '*' and '?' are ordinary characters.
//
// Files are reported in this order: directories as they were added; in each the tails from the
// longest; for each tail the names that match exactly before those that differ in letter case; and
// in a tree the directory itself, then its sub-directories in the order of their names, depth
// first. A path is reported once. What is no directory counts as a file. Links to directories are
// not entered on the way down a tree, and what cannot be read is skipped.

#pragma once

#include <cstdint>
#include <vector>

#include "paku/filename.h"
#include "paku/string.h"

namespace PAKU_3_1 {

/// Receives what a search finds.
class IFileScanCallback {
 public:
  /// Returns false to end the search. `path` is the directory as it was added and the path below
  /// it.
  virtual bool onFileFound(const String& path) = 0;  // 0
  virtual ~IFileScanCallback() = default;            // 1
};

/// How one directory of a search was served.
struct ScannedDirectory {
  enum class State {
    kSearched,  ///< To its end.
    kEnded,     ///< The callback ended the search in it.
    kMissing,   ///< No directory.
    kUnreadable,
    kRepeated,     ///< Served before in the same search.
    kNotSearched,  ///< The search had ended, or the name has nothing to look for.
  };

  const String& path;  ///< As it was added.
  int depth;
  State state;
  bool isFromIndex;
  std::uint64_t entries;  ///< Entries read from disk, or files that the index yielded.
};

/// Hears of the directories of a search, of each when it is over, in their order.
class IScanWatcher {
 public:
  virtual void onDirectory(const ScannedDirectory& directory) = 0;  // 0

 protected:
  ~IScanWatcher() = default;
};

class FileSearch final {
 public:
  /// `depth`: how many levels of sub-directories belong to the search, 0 for the directory alone,
  /// -1 for the whole tree. `reserved` is not used. An empty directory name is ignored.
  void addSearchDirectory(const Filename& directory, int depth, int reserved);
  void clearSearchDirectories();

  /// Reports the files called `name` to `callback` until that returns false. `watcher` may be null.
  void find(const String& name, IFileScanCallback& callback, IScanWatcher* watcher = nullptr) const;

 private:
  struct SearchDirectory {
    std::wstring path;
    int depth;
    bool operator==(const SearchDirectory&) const = default;
  };

  std::vector<SearchDirectory> m_directories;
};

}  // namespace PAKU_3_1
