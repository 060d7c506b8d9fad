// Settings in atomic cells.

#include "paku/index_settings.h"

#include <atomic>
#include <cwchar>
#include <string>

#include "paku/environment.h"

namespace PAKU_3_1::internal {
namespace {

struct Cells {
  std::atomic<IndexUse> use = indexUseOf(environmentValue(L"QUIVER_TREE_INDEX"));
  std::atomic<std::size_t> maxBytes = indexBytesOf(environmentValue(L"QUIVER_TREE_INDEX_MEMORY"));
  std::atomic<std::uint64_t> fewestEntries = IndexSettings{}.fewestEntries;
};

Cells& cells() {
  static Cells cells;
  return cells;
}

}  // namespace

IndexUse indexUseOf(const std::wstring& text) {
  if (text == L"off")
    return IndexUse::kNever;
  return text == L"always" ? IndexUse::kFromFirstScan : IndexUse::kFromSecondScan;
}

std::size_t indexBytesOf(const std::wstring& text) {
  constexpr unsigned long kDefault = 256;
  constexpr unsigned long kMost = 2048;  // on every system a size that can be counted
  const bool isNumber = !text.empty() && text.size() <= 4 &&
                        text.find_first_not_of(L"0123456789") == std::wstring::npos;
  const unsigned long megabytes = isNumber ? std::wcstoul(text.c_str(), nullptr, 10) : kDefault;
  return std::size_t{megabytes <= kMost ? megabytes : kDefault} << 20;
}

IndexSettings indexSettings() {
  return {cells().use, cells().maxBytes, cells().fewestEntries};
}

void setIndexSettings(const IndexSettings& settings) {
  cells().use = settings.use;
  cells().maxBytes = settings.maxBytes;
  cells().fewestEntries = settings.fewestEntries;
}

}  // namespace PAKU_3_1::internal
