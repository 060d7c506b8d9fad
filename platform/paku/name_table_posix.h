// Sought names as bytes, for comparison with every entry of a tree.
//
// Most entries are told apart by their length alone; none is converted to wide text.

#pragma once

#include <bitset>
#include <climits>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace PAKU_3_1::internal {

/// Folds the ASCII letters to lower case.
constexpr char foldCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

class NameTable final {
 public:
  struct Name {
    std::string bytes;
    std::size_t index;
  };

  /// Names that no entry can bear are left out.
  explicit NameTable(const std::vector<std::wstring>& names);

  /// Returns the sought names that differ from `entry` in the case of ASCII letters at most, in
  /// ascending order of their indices; null when there is none. One thread at a time.
  const std::vector<Name>* find(std::string_view entry) const {
    return entry.size() <= NAME_MAX && m_lengths[entry.size()] ? findFolded(entry) : nullptr;
  }

 private:
  const std::vector<Name>* findFolded(std::string_view entry) const;

  std::bitset<NAME_MAX + 1> m_lengths;
  std::unordered_map<std::string, std::vector<Name>> m_byFoldedName;
  mutable std::string m_folded;  // kept for its storage
};

}  // namespace PAKU_3_1::internal
