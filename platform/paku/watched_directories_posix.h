// Directories whose entries are known and stay known.
//
// A directory is watched before it is read, so no change goes unnoticed; `refresh` takes in what
// has changed since. When it answers false nothing of the whole can be trusted any more and it is
// to be thrown away. One thread at a time.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "paku/file_descriptor_posix.h"
#include "paku/known_directories.h"
#include "paku/watch_queue_posix.h"

namespace PAKU_3_1::internal {

class WatchedDirectories final : public IKnownDirectories {
 public:
  using Number = NameIndex::Number;
  static constexpr Number kNone = NameIndex::kNone;

  WatchedDirectories(bool isTree, std::size_t maxBytes) : m_isTree(isTree), m_maxBytes(maxBytes) {}

  bool add(const SearchedDirectory& directory) override;
  Number find(const FileIdentity& identity) const override;
  bool refresh(const SearchedDirectory& directory) override;

  const NameIndex& index() const override { return m_index; }
  std::size_t bytes() const override;
  std::size_t rootCount() const override { return m_roots.size(); }

 private:
  struct Unread {
    Number directory;
    std::size_t level;
  };
  struct Touched {
    int watch;
    std::string name;
    auto operator<=>(const Touched&) const = default;
  };

  bool read(int root, Number top, std::size_t level);
  bool readOne(int fd, const Unread& directory, std::vector<Unread>& unread);
  bool watch(int fd, Number directory);
  NameIndex::Kind kindOf(int directory, std::string_view name, unsigned char type) const;
  bool takeInEvents(std::vector<Touched>& touched);
  bool onEvent(const inotify_event& event, std::string_view name, std::vector<Touched>& touched);
  void giveUp(Number root);
  void removeTouched(const std::vector<Touched>& touched, Number root);
  bool addTouched(const std::vector<Touched>& touched, int root);
  bool addAgain(Number directory, const std::string& name, int root);
  Number directoryOf(int watch) const;
  void unwatch(Number directory);

  const bool m_isTree;
  const std::size_t m_maxBytes;
  WatchQueue m_queue;
  NameIndex m_index;
  std::unordered_map<FileIdentity, Number, FileIdentityHash> m_roots;
  std::vector<Number> m_byWatch;  // watches are numbered one after the other
  std::vector<int> m_watches;     // of each directory, -1 for none
};

}  // namespace PAKU_3_1::internal
