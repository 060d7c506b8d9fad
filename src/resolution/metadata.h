// What the context manager remembers for one context: search directories by key, callbacks by key,
// an archive directory.
//
// Keys compare exactly and are walked in ascending order. Entries are made and replaced, never
// removed. Owned by the manager for its whole life; no lock, since use of the manager is
// serialised by its callers. Callbacks are referred to weakly.

#pragma once

#include <map>
#include <string>

#include "quiver/object.h"
#include "quiver/ref_count.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_dirs.h"

namespace QV_2_9 {

/// The callbacks filed under one key. A copy registers itself with every callback in it.
struct CallbackSet {
  CallbackHolder<ISearchStartedCallback> searchStarted;
  CallbackHolder<IFilesFoundCallback> filesFound;
  CallbackHolder<INoFilesFoundCallback> noFilesFound;
  CallbackHolder<IConfidenceLevelPolicyCallback> confidenceLevelPolicy;
};

/// Walks the search directories of one context by ascending key. Valid while its metadata lives and
/// no key is added to it.
///
///   while (it->get(&key, dirs)) { ...; it->next(); }
class ISearchDirKeyIterator : public IQVObject {
 public:
  /// Returns false when that is the end, where it stays.
  virtual bool next() = 0;  // 4
  /// Returns false at the end, leaving the outputs untouched. `*key` belongs to the metadata;
  /// `dirs` may become null.
  virtual bool get(const wchar_t** key, ObjectPtr<ISearchDirContainer>& dirs) = 0;  // 5
};

/// Null is no key; getters create nothing.
class IMetadata : public IQVObject {
 public:
  /// Returns null when nothing is filed under `key`.
  virtual ObjectPtr<ISearchDirContainer> getSearchDirs(const wchar_t* key) = 0;  // 4
  virtual void setSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs,
                             const wchar_t* key) = 0;               // 5
  virtual ObjectPtr<ISearchDirKeyIterator> getSearchDirKeys() = 0;  // 6
  // Each replaces one kind and leaves the other three of its key as they are.
  virtual void setSearchStartedCallback(const std::wstring& key,
                                        ISearchStartedCallback* callback) = 0;  // 7
  virtual void setFilesFoundCallback(const std::wstring& key,
                                     IFilesFoundCallback* callback) = 0;  // 8
  virtual void setNoFilesFoundCallback(const std::wstring& key,
                                       INoFilesFoundCallback* callback) = 0;  // 9
  virtual void setConfidenceLevelPolicyCallback(
      const std::wstring& key,
      IConfidenceLevelPolicyCallback* callback) = 0;  // 10
  /// Returns four empty holders when nothing is filed under `key`.
  virtual CallbackSet getCallbacks(const std::wstring& key) = 0;  // 11
  /// Ignores null.
  virtual void setArchiveDir(const wchar_t* dir) = 0;  // 12
  virtual std::wstring getArchiveDir() = 0;            // 13
};

class Metadata final : public RefCountImpl<IMetadata> {
 public:
  using SearchDirMap = std::map<std::wstring, ObjectPtr<ISearchDirContainer>>;

  ObjectPtr<ISearchDirContainer> getSearchDirs(const wchar_t* key) override;
  void setSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs, const wchar_t* key) override;
  ObjectPtr<ISearchDirKeyIterator> getSearchDirKeys() override;
  void setSearchStartedCallback(const std::wstring& key, ISearchStartedCallback* callback) override;
  void setFilesFoundCallback(const std::wstring& key, IFilesFoundCallback* callback) override;
  void setNoFilesFoundCallback(const std::wstring& key, INoFilesFoundCallback* callback) override;
  void setConfidenceLevelPolicyCallback(const std::wstring& key,
                                        IConfidenceLevelPolicyCallback* callback) override;
  CallbackSet getCallbacks(const std::wstring& key) override;
  void setArchiveDir(const wchar_t* dir) override;
  std::wstring getArchiveDir() override;

 private:
  template <class T>
  void setCallback(const std::wstring& key, CallbackHolder<T> CallbackSet::*kind, T* callback);

  std::map<std::wstring, CallbackSet> m_callbacks;  // nodes: a holder must stay where it is
  SearchDirMap m_searchDirs;
  std::wstring m_archiveDir;
};

class SearchDirKeyIterator final : public RefCountImpl<ISearchDirKeyIterator> {
 public:
  explicit SearchDirKeyIterator(const Metadata::SearchDirMap& searchDirs)
      : m_searchDirs(&searchDirs), m_position(searchDirs.begin()) {}

  bool next() override;
  bool get(const wchar_t** key, ObjectPtr<ISearchDirContainer>& dirs) override;

 private:
  const Metadata::SearchDirMap* m_searchDirs;
  Metadata::SearchDirMap::const_iterator m_position;
};

}  // namespace QV_2_9
