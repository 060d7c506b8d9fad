// Directories that a caller files per category, and the read side that searches use.
//
// Lists are copied when an iterator is made: an iterator never sees later changes. Containers may
// be filled and read from several threads; references to containers and iterators are counted
// without a lock, and an iterator belongs to the thread that asked for it.

#pragma once

#include <stdint.h>

#include "quiver/export.h"
#include "quiver/object.h"

namespace QV_2_9 {

/// What kind of file a directory or a search is about.
enum search_category_t : int32_t {
  scBinaryFiles = 1,  ///< Binary modules.
  scSymbolFiles = 2,  ///< Symbol files.
  scSourceFiles = 3,  ///< Source files.
  scAllFiles = 4,  ///< Directories that serve every category; searches read them after their own.
};

/// Walks a snapshot of one category's directories, in the order they were added.
///
///   for (it->reset(); it->get(dir, recursive, high); it->next()) { ... }
///
/// Implemented by: the library; by the caller for containers of its own.
/// Lifetime: counted.
/// Threads: one thread at a time.
/// Failure: `next` and `get` answer false at the end.
class ISearchDirIterator : public IQVObject {
 public:
  /// Goes back to the first entry. A new iterator stands there already.
  virtual void reset() = 0;  // 4
  /// Goes to the next entry. Returns false when that is the end, where it stays.
  virtual bool next() = 0;  // 5
  /// Returns false at the end, leaving the outputs untouched. `dir` belongs to the iterator; an
  /// entry whose `dir` is null is passed over by searches.
  virtual bool get(const wchar_t*& dir, bool& recursive, bool& highPriority) = 0;  // 6
};

/// Search directories per category.
///
/// Implemented by: the library; a caller may bring its own.
/// Lifetime: counted.
/// Threads: any.
/// Failure: none.
class ISearchDirContainer : public IQVObject {
 public:
  /// Returns an iterator over the category's directories. Null when the category is none of the
  /// enumerators or nothing was ever filed under it.
  virtual ObjectPtr<ISearchDirIterator> createIterator(search_category_t category) = 0;  // 4
};

/// Search directories that the caller fills.
///
/// Implemented by: the library.
/// Lifetime: counted.
/// Threads: any.
/// Failure: false for a category that is none of the enumerators.
class IEditableSearchDirContainer : public ISearchDirContainer {
 public:
  /// Appends a directory. The text is kept as given, and no directory need exist.
  ///
  /// `recursive`: look into the tree below it too. `highPriority`: look early, before the recorded
  /// path itself is tried, rather than last. A directory that is there already (same place, letter
  /// case ignored) keeps its position and text, and flags only rise. Returns true when the category
  /// is valid, also for a duplicate or a null `dir`.
  virtual bool addSearchDir(search_category_t category,
                            const wchar_t* dir,
                            bool recursive,
                            bool highPriority) = 0;  // 5
  /// Empties the category's list.
  virtual bool clearSearchDirs(search_category_t category) = 0;  // 6

  /// Returns a new container without directories.
  QV_API static ObjectPtr<IEditableSearchDirContainer> create();
};

/// Several containers behind one: their directories in member order, duplicates merged.
///
/// Implemented by: the library.
/// Lifetime: counted; holds a reference on every member.
/// Threads: any. A chain must not contain itself, directly or through another chain.
/// Failure: false for a null container.
class ISearchDirChain : public ISearchDirContainer {
 public:
  /// Appends a member; there is no duplicate check and no way to take it out again.
  virtual bool addContainer(const ObjectPtr<ISearchDirContainer>& container) = 0;  // 5

  /// Returns a new chain without members. Its `createIterator` answers null until a member yields a
  /// directory for the category.
  QV_API static ObjectPtr<ISearchDirChain> create();
};

}  // namespace QV_2_9
