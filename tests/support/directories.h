// What a directory iterator yields, as texts.
//
//   EXPECT_EQ(directoriesOf(container->createIterator(scAllFiles)),
//             (std::vector<std::wstring>{L"/plain", L"/tree +r", L"/early +h", L"/both +rh"}));

#pragma once

#include <string>
#include <vector>

#include "quiver/object.h"
#include "quiver/search_dirs.h"

namespace quiver_test {

/// Walks the iterator from its beginning, as searches do. Flags stand behind the directory. A null
/// pointer, which an empty iterator is not, gives the one text `kNoIterator`.
inline constexpr const wchar_t* kNoIterator = L"(no iterator)";

inline std::vector<std::wstring> directoriesOf(
    const QV_2_9::ObjectPtr<QV_2_9::ISearchDirIterator>& iterator) {
  if (!iterator)
    return {kNoIterator};
  std::vector<std::wstring> texts;
  const wchar_t* dir = nullptr;
  bool recursive = false;
  bool highPriority = false;
  for (iterator->reset(); iterator->get(dir, recursive, highPriority); iterator->next()) {
    texts.emplace_back(dir);
    if (recursive || highPriority)
      texts.back() += std::wstring(L" +") + (recursive ? L"r" : L"") + (highPriority ? L"h" : L"");
  }
  return texts;
}

}  // namespace quiver_test
