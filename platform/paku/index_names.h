// Names of entries as an index keeps them: in the units of the system, compared as its file systems
// compare them.

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace PAKU_3_1::internal {

/// Bytes on POSIX systems, UTF-16 on Windows.
using NameChar = std::filesystem::path::value_type;
using NameString = std::basic_string<NameChar>;
using NameView = std::basic_string_view<NameChar>;

/// A name as it is sought.
struct SoughtName {
  NameString text;  ///< Empty for a name that no entry can bear.
  std::uint32_t hash = 0;
};
SoughtName soughtName(const std::wstring& component);

/// Returns the same for names that `isCalled` calls the same.
std::uint32_t nameHash(NameView name);

/// Returns whether an entry may be meant by `sought`: letter case does not count.
bool isCalled(NameView entry, NameView sought);

/// Returns whether it is spelled as it is sought. Where letter case tells no names apart, every
/// spelling of the name is its own.
bool isSpelledAs(NameView entry, NameView sought);

/// Returns whether a sought name may lead to an entry that is called otherwise, as the short names
/// do that some file systems give out. An index cannot tell.
bool mayBeShortName(NameView sought);

NameString encodedName(const std::wstring& text);
std::wstring decodedName(NameView name);

/// Paths of more units are never looked at.
extern const std::size_t kLongestIndexedPath;

/// Between the components of a path.
extern const NameChar kNameSeparator;

}  // namespace PAKU_3_1::internal
