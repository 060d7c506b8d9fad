// Directories whose entries are known and stay known, as a registry of indexes keeps them.

#pragma once

#include <cstddef>
#include <memory>
#include <optional>

#include "paku/name_index.h"
#include "paku/searched_directory.h"

namespace PAKU_3_1::internal {

/// One thread at a time. When `add` or `refresh` answers false nothing of the whole can be trusted
/// any more and it is to be thrown away.
class IKnownDirectories {
 public:
  virtual ~IKnownDirectories() = default;

  /// Reads a directory. Returns false when it cannot be kept.
  virtual bool add(const SearchedDirectory& directory) = 0;

  /// Returns the root with this identity. `NameIndex::kNone` when it was not added or is gone.
  virtual NameIndex::Number find(const FileIdentity& identity) const = 0;

  /// Takes in what has changed in `directory`, which is to be used now; of the others those that
  /// have changed are given up.
  virtual bool refresh(const SearchedDirectory& directory) = 0;

  virtual const NameIndex& index() const = 0;
  virtual std::size_t bytes() const = 0;
  virtual std::size_t rootCount() const = 0;
};

/// Returns whether the system tells of all changes in a directory, or in the whole tree of it.
/// Asked before a place is given: what can never be known takes none from what can. It costs more
/// than the walk of a small tree.
bool canBeKnown(const SearchedDirectory& directory, bool isTree);

/// `isTree`: with all that is below them. More than `maxBytes` are not kept.
std::unique_ptr<IKnownDirectories> makeKnownDirectories(bool isTree, std::size_t maxBytes);

/// Returns the user whose rights this thread has, where a process can change that; else 0. Nothing
/// when they cannot be told from those of others.
std::optional<unsigned> rightsOfThread();

}  // namespace PAKU_3_1::internal
