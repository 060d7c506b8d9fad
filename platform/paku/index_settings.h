// How trees are indexed, for the whole process.
//
// The environment gives the first values, read when they are needed first:
//
//   QUIVER_TREE_INDEX          off: never; always: from the first scan; else: from the second
//   QUIVER_TREE_INDEX_MEMORY   how many MiB all indexes may take together; 256 when it is not set

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace PAKU_3_1::internal {

enum class IndexUse {
  kNever,
  kFromFirstScan,
  kFromSecondScan,
};

struct IndexSettings {
  IndexUse use;
  std::size_t maxBytes;
  std::uint64_t fewestEntries = 128;  ///< Trees with less are walked, but for `kFromFirstScan`.
};

/// Returns what the text of a variable stands for.
IndexUse indexUseOf(const std::wstring& text);
std::size_t indexBytesOf(const std::wstring& text);

/// Safe to use from several threads.
IndexSettings indexSettings();
void setIndexSettings(const IndexSettings& settings);

}  // namespace PAKU_3_1::internal
