// The directories on the way to the one that is being read, kept open.

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "paku/directory_entries_posix.h"
#include "paku/file_descriptor_posix.h"

namespace PAKU_3_1::internal {

/// The innermost of the directories on the way to the one at hand. A few levels are enough to open
/// most directories by their name alone; trees may be deeper than a process may have files open.
class OpenAncestors final {
 public:
  explicit OpenAncestors(int start) : m_start(start) {}

  /// Opens the directory `below`, which is `level` levels down, for reading. Every directory that
  /// is opened after another lies in it, or beside it, or in one that was opened before.
  int open(std::string_view below, std::size_t level) {
    m_levels.resize(level);
    const int parent = level ? m_levels[level - 1].get() : -1;
    const std::size_t slash = below.rfind('/');
    const std::string_view name = slash == std::string_view::npos ? below : below.substr(slash + 1);
    m_levels.push_back(parent == -1 ? openDirectoryBelow(m_start, below, false)
                                    : openDirectoryBelow(parent, name, false));
    if (level >= kKept)
      m_levels[level - kKept] = FileDescriptor();
    return m_levels[level].get();
  }

 private:
  static constexpr std::size_t kKept = 16;

  const int m_start;
  std::vector<FileDescriptor> m_levels;
};

}  // namespace PAKU_3_1::internal
