// Names are bytes; the ASCII letters of a sought name may be of either case.

#include <algorithm>
#include <climits>

#include "paku/index_names.h"
#include "paku/name_table_posix.h"
#include "paku/native_path_posix.h"
#include "paku/text_encoding.h"

namespace PAKU_3_1::internal {

const std::size_t kLongestIndexedPath = PATH_MAX;
const NameChar kNameSeparator = '/';

/// FNV-1a of the folded bytes.
std::uint32_t nameHash(NameView name) {
  std::uint32_t hash = 2166136261u;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(foldCase(c))) * 16777619u;
  return hash ^ (hash >> 15);
}

bool isCalled(NameView entry, NameView sought) {
  return std::ranges::equal(entry, sought, {}, foldCase, foldCase);
}

bool isSpelledAs(NameView entry, NameView sought) {
  return entry == sought;
}

bool mayBeShortName(NameView /*sought*/) {
  return false;
}

NameString encodedName(const std::wstring& text) {
  NameString bytes;
  const bool isName = nativePath(text, bytes) && bytes.size() <= NAME_MAX;
  return isName ? bytes : NameString();
}

std::wstring decodedName(NameView name) {
  return decode(name);
}

}  // namespace PAKU_3_1::internal
