// The six search steps as far as all categories share them, and the thin layer that binds a
// category's callback operations to a strategy.
//
// A strategy lives on the stack of one search, keeps no state between steps and reads the
// environment afresh in each.

#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "quiver/search_env.h"
#include "search/category_ops.h"
#include "search/file_search_strategy.h"

namespace QV_2_9 {

namespace internal {
class LookupJournal;
}

class BasicFileSearchStrategy : public IFileSearchStrategy, public ISearchPathFilter {
 public:
  BasicFileSearchStrategy(const BasicFileSearchStrategy&) = delete;
  BasicFileSearchStrategy& operator=(const BasicFileSearchStrategy&) = delete;

  void searchArchiveDirs(ISearchResultsContainer& results) override;
  void searchHighPriorityDirs(ISearchResultsContainer& results) override;
  bool lookupAbsoluteName(ISearchResultsContainer& results) override;
  void searchSystemDirs(ISearchResultsContainer& results) override;
  void searchLowPriorityDirs(ISearchResultsContainer& results) override;

  virtual search_category_t getCategory() = 0;                           // 9
  virtual void addSystemDirs(ISearchDirectoryContainer& container) = 0;  // 10

  virtual internal::SoughtFile sought() const = 0;  // 11

  bool isExcluded(const wchar_t* dir) override;

  /// From now on `journal` hears of places that are looked at. Not owned; null for nobody.
  void setJournal(internal::LookupJournal* journal) { m_journal = journal; }
  /// Returns the name as it is compared in directories.
  const std::wstring& nameInDirectories();

 protected:
  /// `searchEnv` is not owned and may be null. The name sought is `fileName` as the
  /// operating-system routines map it for the analysed system.
  BasicFileSearchStrategy(ISearchEnv* searchEnv, const wchar_t* fileName);
  ~BasicFileSearchStrategy() = default;

  /// Returns the kind of the analysed system, 0 when nobody said.
  std::int32_t osType() const;
  /// Looks beside `binaryFile` and in every directory above it; nothing when it is empty.
  void walkAroundBinary(const std::wstring& binaryFile, ISearchResultsContainer& results);

  ISearchEnv* searchEnv() const { return m_searchEnv; }
  internal::LookupJournal* journal() const { return m_journal; }
  const std::wstring& fileName() const { return m_fileName; }

 private:
  void searchDirs(search_step_t step, bool highPriority, ISearchResultsContainer& results);

  ISearchEnv* m_searchEnv;
  internal::LookupJournal* m_journal = nullptr;
  std::wstring m_fileName;
  std::wstring m_nameInDirectories;  // empty until it is needed
};

/// Supplies what a category's `Ops` say; the named strategies add what is truly theirs.
template <class Ops>
class CategoryFileSearchStrategy : public BasicFileSearchStrategy {
 public:
  bool fireSearchStarted(ISearchStartedCallback* callback, IStringContainer& suggestions) override {
    return Ops::searchStarted(*callback, sought(), suggestions);
  }
  ObjectPtr<IValidFile> fireFilesFound(IFilesFoundCallback* callback,
                                       IValidFileIterator& files) override {
    return Ops::filesFound(*callback, sought(), files);
  }
  ObjectPtr<IValidFile> fireNoFilesFound(INoFilesFoundCallback* callback,
                                         IInvalidFileIterator& invalidFiles,
                                         IValidFileIterator& validFiles) override {
    return Ops::noFilesFound(*callback, sought(), *m_validator, invalidFiles, validFiles);
  }
  search_category_t getCategory() override { return Ops::kCategory; }
  internal::SoughtFile sought() const override {
    return {fileName().c_str(), m_binaryFile.c_str(), m_checksum.c_str()};
  }

 protected:
  /// Null texts are stored as empty ones. `validator` is not owned and never null.
  CategoryFileSearchStrategy(ISearchEnv* searchEnv,
                             const wchar_t* fileName,
                             const wchar_t* binaryFile,
                             const wchar_t* checksum,
                             IValidatorInternal* validator)
      : BasicFileSearchStrategy(searchEnv, fileName),
        m_binaryFile(binaryFile ? binaryFile : L""),
        m_checksum(checksum ? checksum : L""),
        m_validator(validator) {}
  ~CategoryFileSearchStrategy() = default;

  const std::wstring& binaryFile() const { return m_binaryFile; }

 private:
  std::wstring m_binaryFile;
  std::wstring m_checksum;
  IValidatorInternal* m_validator;
};

namespace internal {

/// Calls `visit(dir, recursive, highPriority)` for every entry of `dirs` that has a text, from the
/// first. A null iterator has none.
void forEachSearchDir(const ObjectPtr<ISearchDirIterator>& dirs,
                      const std::function<void(const wchar_t*, bool, bool)>& visit);

}  // namespace internal
}  // namespace QV_2_9
