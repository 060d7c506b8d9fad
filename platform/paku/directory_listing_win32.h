// Entries of directories, with basic information and in large portions.

#pragma once

#include <windows.h>
#include <string>
#include <string_view>

#include "paku/directory_tree.h"
#include "paku/no_dialogs.h"

namespace PAKU_3_1::internal {

/// Returns `directory` itself for an empty `below`.
std::wstring pathBelow(const std::wstring& directory, std::wstring_view below);

/// Owns a running listing.
class Listing final {
 public:
  /// `pattern`: a directory with "\*" behind it, or a path without a wildcard: that entry alone.
  explicit Listing(const std::wstring& pattern);
  ~Listing();

  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;

  bool isOpen() const { return m_find != INVALID_HANDLE_VALUE; }
  const WIN32_FIND_DATAW& entry() const { return m_entry; }
  bool next() { return FindNextFileW(m_find, &m_entry) != 0; }

 private:
  const NoDialogs m_noDialogs;
  WIN32_FIND_DATAW m_entry = {};
  HANDLE m_find = INVALID_HANDLE_VALUE;
};

bool isDots(const wchar_t* name);

/// Links and junctions name another place. Other files with a tag are stored in a special way only.
bool isLink(const WIN32_FIND_DATAW& entry);
bool isRealDirectory(const WIN32_FIND_DATAW& entry);

/// Returns what the path leads to, links being followed.
EntryKind kindOfPath(const std::wstring& directory, std::wstring_view below);

/// Returns how the entry is called on disk; nothing when there is none.
std::wstring nameOnDisk(const std::wstring& directory, std::wstring_view below);

/// The same for all components. What is not there stays as it is.
std::wstring pathOnDisk(const std::wstring& directory, const std::wstring& below);

}  // namespace PAKU_3_1::internal
