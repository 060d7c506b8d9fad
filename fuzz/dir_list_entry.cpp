// A list of directories beside a list that looks through all it has.

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "config/filtered_dir_list.h"
#include "fuzz_entries.h"
#include "fuzz_input.h"
#include "os/path_utils.h"

namespace quiver_fuzz {
namespace {

using QV_2_9::FilteredDirList;
using QV_2_9::ObjectPtr;
using QV_2_9::SearchDirEntry;

class NaiveList final {
 public:
  bool add(const std::wstring& dir, bool recursive, bool highPriority) {
    const std::wstring key = QV_2_9::toCanonicalAbsolutePath(dir.c_str(), true);
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
      if (QV_2_9::compareIgnoreCase(m_keys[i].c_str(), key.c_str()) != 0)
        continue;
      m_entries[i].recursive = m_entries[i].recursive || recursive;
      m_entries[i].highPriority = m_entries[i].highPriority || highPriority;
      return false;
    }
    m_keys.push_back(key);
    m_entries.push_back({dir, recursive, highPriority});
    return true;
  }

  void clear() {
    m_keys.clear();
    m_entries.clear();
  }

  const std::vector<SearchDirEntry>& entries() const { return m_entries; }

 private:
  std::vector<std::wstring> m_keys;
  std::vector<SearchDirEntry> m_entries;
};

bool areEqual(const std::vector<SearchDirEntry>& a, const std::vector<SearchDirEntry>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
    return x.dir == y.dir && x.recursive == y.recursive && x.highPriority == y.highPriority;
  });
}

/// Returns true for a text that stays what it is when something is appended in the same style.
bool isOfOneStyle(const std::wstring& dir) {
  return !dir.empty() && dir.find_first_of(L"\\:") == std::wstring::npos;
}

}  // namespace

void fuzzDirList(std::string_view bytes) {
  FuzzInput input(bytes);
  const ObjectPtr<FilteredDirList> list = new FilteredDirList();
  NaiveList naive;
  for (int calls = 0; !input.isEmpty() && calls < 200; ++calls) {
    const unsigned call = input.number();
    const bool recursive = (call & 1) != 0;
    const bool highPriority = (call & 2) != 0;
    switch (call >> 4) {
      case 0:
        list->clear();
        naive.clear();
        break;
      case 1:
        require(!list->add(nullptr, recursive, highPriority));
        break;
      default:
        const std::wstring dir = input.line();
        require(list->add(dir.c_str(), recursive, highPriority) ==
                naive.add(dir, recursive, highPriority));
        if (isOfOneStyle(dir))
          require(!list->add((dir + L"//./").c_str(), false, false));
    }
    require(areEqual(list->entries(), naive.entries()));
  }
}

}  // namespace quiver_fuzz
