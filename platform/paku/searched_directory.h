// A directory that is searched with an index: by its path, and told from any other that may bear
// the path later.

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "paku/index_names.h"

namespace PAKU_3_1::internal {

/// Tells directories apart for as long as they exist.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t file = 0;  ///< Its number on the device.
  bool operator==(const FileIdentity&) const = default;
};

struct FileIdentityHash {
  std::size_t operator()(const FileIdentity& identity) const {
    return std::hash<std::uint64_t>()(identity.file ^ (identity.device << 40));
  }
};

class SearchedDirectory final {
 public:
  /// Returns nothing when the path leads to no directory.
  static std::optional<SearchedDirectory> at(const std::wstring& path);

  SearchedDirectory(NameString path, const FileIdentity& identity)
      : m_path(std::move(path)), m_identity(identity) {}

  /// As system calls take it.
  const NameString& path() const { return m_path; }
  const FileIdentity& identity() const { return m_identity; }

  /// Returns whether `below` leads to something that is no directory, links being followed.
  bool hasFile(const NameString& below) const;

  /// Returns the entries of the directory `below` that may be meant by `name`, in ascending order.
  std::vector<NameString> entriesCalled(const NameString& below, const NameString& name) const;

  /// Returns `name` in the directory `below` as it is spelled on disk, where letter case does not
  /// tell names apart; `name` itself elsewhere.
  NameString spelling(const NameString& below, const NameString& name) const;

 private:
  NameString m_path;
  FileIdentity m_identity;
};

}  // namespace PAKU_3_1::internal
