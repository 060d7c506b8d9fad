// The mappings themselves: an ordered table, and what checks have said of its rows.
//
// A lock guards the rows; it is held for a look at the table alone, never while a caller's code or
// the file system is asked.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/lock.h"
#include "os/path_prefix.h"

namespace QV_2_9::internal {

struct PathMappingRow {
  MappedPrefixes prefixes;
  bool isLearned = false;
  std::int32_t confirmations = 0;
};

class PathMappingTable final {
 public:
  static constexpr std::size_t kMostLearned = 256;

  void addByHand(const MappedPrefixes& prefixes);

  /// Puts a new row in front of the learned ones, unless a row leads from `recorded` to `local`
  /// already. Returns false when nothing can be learned from the two.
  bool learn(const wchar_t* recorded, const wchar_t* local);

  /// Returns where the rows put a recorded path, in the order of the rows, each place once.
  std::vector<std::wstring> placesOf(const wchar_t* recorded);

  /// Counts for every row that leads from `recorded` to `place`.
  void confirm(const wchar_t* recorded, const std::wstring& place);

  /// Drops the learned rows that lead from `recorded` to `place`.
  void refute(const wchar_t* recorded, const std::wstring& place);

  void clear();
  std::size_t size();
  std::optional<PathMappingRow> row(std::size_t index);

 private:
  /// Returns the indexes, in ascending order, of the rows that lead from `recorded` to `place`.
  std::vector<std::size_t> rowsTo(const wchar_t* recorded, const std::wstring& place) const
      QV_REQUIRES(m_lock);

  QVLock m_lock;
  std::vector<PathMappingRow> m_rows QV_GUARDED_BY(m_lock);  // those set by hand first
};

}  // namespace QV_2_9::internal
