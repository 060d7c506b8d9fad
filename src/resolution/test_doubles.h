// What the tests of this folder look into environments with, and hand to callbacks.

#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "quiver/object.h"
#include "quiver/search_dirs.h"
#include "quiver/search_history.h"
#include "quiver/search_results.h"
#include "quiver/validation.h"

namespace QV_2_9::internal {

struct DirEntry {
  std::wstring dir;
  bool recursive;
  bool highPriority;
  bool operator==(const DirEntry&) const = default;
};

/// For test messages.
inline void PrintTo(const DirEntry& entry, std::ostream* out) {
  for (const wchar_t c : entry.dir) *out << static_cast<char>(c);
  *out << (entry.recursive ? " recursive" : "") << (entry.highPriority ? " high" : "");
}

/// Returns no entries for a null iterator.
inline std::vector<DirEntry> entriesOf(const ObjectPtr<ISearchDirIterator>& iterator) {
  std::vector<DirEntry> entries;
  const wchar_t* dir = nullptr;
  bool recursive = false;
  bool highPriority = false;
  for (; iterator && iterator->get(dir, recursive, highPriority); iterator->next())
    entries.push_back({dir, recursive, highPriority});
  return entries;
}

inline std::vector<std::wstring> dirsOf(const ObjectPtr<ISearchDirIterator>& iterator) {
  std::vector<std::wstring> dirs;
  for (const DirEntry& entry : entriesOf(iterator)) dirs.push_back(entry.dir);
  return dirs;
}

/// The remembered path; "(negative)" when the file is to stay unresolved, "(none)" without entry.
inline std::wstring pathOf(const ObjectPtr<IFileAssociation>& association) {
  if (!association)
    return L"(none)";
  const wchar_t* path = association->getPath();
  return path ? path : L"(negative)";
}

/// Hands out the files it was made with, and counts how it was used.
class FileList final : public IValidFileIterator {
 public:
  explicit FileList(std::vector<ObjectPtr<IValidFile>> files) : m_files(std::move(files)) {}

  void reset() override { ++resets; }
  ObjectPtr<IValidFile> next() override {
    ++nexts;
    return m_position < m_files.size() ? m_files[m_position++] : nullptr;
  }

  int resets = 0;
  int nexts = 0;

 private:
  std::vector<ObjectPtr<IValidFile>> m_files;
  std::size_t m_position = 0;
};

class NoInvalidFiles final : public IInvalidFileIterator {
 public:
  void reset() override {}
  ObjectPtr<IInvalidFile> next() override { return nullptr; }
};

class NoValidator final : public IValidator {
 public:
  ObjectPtr<IValidatedFile> validate(const wchar_t*) override { return nullptr; }
};

}  // namespace QV_2_9::internal
