// A tree whose entries are known and stay known.
//
// The tree is watched as a whole before it is read, so no change goes unnoticed. A directory that
// is searched alone is not kept: looking its names up costs no more.

#pragma once

#include <windows.h>
#include <memory>
#include <string>
#include <vector>

#include "paku/change_notices_win32.h"
#include "paku/known_directories.h"

namespace PAKU_3_1::internal {

class WatchedTree final : public IKnownDirectories {
 public:
  using Number = NameIndex::Number;

  WatchedTree(bool isTree, std::size_t maxBytes) : m_isTree(isTree), m_maxBytes(maxBytes) {}

  bool add(const SearchedDirectory& directory) override;
  Number find(const FileIdentity& identity) const override;
  bool refresh(const SearchedDirectory& directory) override;

  const NameIndex& index() const override { return m_index; }
  std::size_t bytes() const override;
  std::size_t rootCount() const override { return m_notices ? 1 : 0; }

 private:
  bool isKnownAt(const SearchedDirectory& directory) const;
  bool read(const std::wstring& root, Number top);
  bool readOne(const std::wstring& root, Number directory, std::vector<Number>& unread);
  Number addEntry(Number directory, const WIN32_FIND_DATAW& entry);
  Number directoryAt(std::wstring_view below) const;
  Number childOf(Number directory, std::wstring_view name) const;
  void remove(const std::wstring& path);
  bool addAgain(const std::wstring& root, const std::wstring& path);

  const bool m_isTree;
  const std::size_t m_maxBytes;
  std::unique_ptr<ChangeNotices> m_notices;
  bool m_hasTwins = false;  // names that differ in letter case alone: notices do not tell which
  FileIdentity m_identity;
  Number m_root = NameIndex::kNone;
  NameIndex m_index;
};

}  // namespace PAKU_3_1::internal
