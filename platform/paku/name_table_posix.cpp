// Sought names by their folded bytes.

#include "paku/name_table_posix.h"

#include <algorithm>
#include <utility>

#include "paku/native_path_posix.h"

namespace PAKU_3_1::internal {

NameTable::NameTable(const std::vector<std::wstring>& names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::string bytes;
    if (!nativePath(names[i], bytes) || bytes.size() > NAME_MAX)
      continue;
    std::string folded = bytes;
    std::ranges::transform(folded, folded.begin(), foldCase);
    m_lengths.set(bytes.size());
    m_byFoldedName[std::move(folded)].push_back({std::move(bytes), i});
  }
}

const std::vector<NameTable::Name>* NameTable::findFolded(std::string_view entry) const {
  m_folded.assign(entry);
  std::ranges::transform(m_folded, m_folded.begin(), foldCase);
  const auto found = m_byFoldedName.find(m_folded);
  return found == m_byFoldedName.end() ? nullptr : &found->second;
}

}  // namespace PAKU_3_1::internal
