// Names are UTF-16, and the system's table says which of them are the same.

#include <windows.h>

#include "paku/index_names.h"
#include "paku/native_path_win32.h"

namespace PAKU_3_1::internal {
namespace {

/// The same for letters that may be the same to the system: ASCII letters of either case, and all
/// that is no ASCII character, together with the three letters that some of it folds to.
std::uint32_t folded(wchar_t unit) {
  const wchar_t letter =
      unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit - L'A' + L'a') : unit;
  const bool mayBeSeveral = letter >= 0x80 || letter == L'i' || letter == L'k' || letter == L's';
  return mayBeSeveral ? 0x80u : letter;
}

}  // namespace

const std::size_t kLongestIndexedPath = kLongestPath;
const NameChar kNameSeparator = L'\\';

/// FNV-1a of the folded units.
std::uint32_t nameHash(NameView name) {
  std::uint32_t hash = 2166136261u;
  for (const wchar_t unit : name) hash = (hash ^ folded(unit)) * 16777619u;
  return hash ^ (hash >> 15);
}

bool isCalled(NameView entry, NameView sought) {
  return entry.size() == sought.size() && CompareStringOrdinal(entry.data(),
                                                               static_cast<int>(entry.size()),
                                                               sought.data(),
                                                               static_cast<int>(sought.size()),
                                                               TRUE) == CSTR_EQUAL;
}

bool isSpelledAs(NameView /*entry*/, NameView /*sought*/) {
  return true;
}

bool mayBeShortName(NameView sought) {
  return sought.find(L'~') != NameView::npos;
}

NameString encodedName(const std::wstring& text) {
  constexpr std::size_t kLongestName = 255;
  return text.size() <= kLongestName && canBeName(text) ? text : NameString();
}

std::wstring decodedName(NameView name) {
  return std::wstring(name);
}

}  // namespace PAKU_3_1::internal
