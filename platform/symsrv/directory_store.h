// A store that is a directory.

#pragma once

#include <memory>
#include <string>

#include "symsrv/files.h"
#include "symsrv/settings.h"
#include "symsrv/sought_file.h"

namespace symsrv_1_0::internal {

/// Returns what the compressed form of a file is called: "a.pd_" for "a.pdb".
std::string compressedName(const std::string& name);

class DirectoryStore final {
 public:
  /// In a store that takes copies no links are followed below the root. The default store is for
  /// the user alone.
  DirectoryStore(std::string root, bool takesCopies, const Settings& settings);

  const std::string& root() const { return m_root; }

  /// Returns why the store cannot be used. Empty when it can.
  std::string reasonAgainst() const;

  /// Returns the folder of a place, null when there is none.
  std::shared_ptr<Folder> find(const Place& place) const;
  /// Makes the folder of a place.
  std::shared_ptr<Folder> make(const Place& place) const;
  /// Returns the folder of what this module keeps for itself, ".misses".
  std::shared_ptr<Folder> notes(Folder::Missing missing) const;
  /// Removes the folder of a place when nothing is in it.
  void removeEmpty(const Place& place) const;

  Links links() const { return m_links; }

 private:
  bool hasTwoTiers() const;
  Folder::Access access() const;

  std::string m_root;
  Links m_links;
  bool m_isDefault;
};

}  // namespace symsrv_1_0::internal
