// The results of one search, and the iterator that produces them on demand.
//
// Candidates come in through `addFoundFile`, are tested and validated, and end in one of two lists.
// `next` hands out the valid files and runs the next search step whenever the list is used up.
//
// Lives on the stack of one search. Iterators and lists are used by the thread of the search only,
// and only until the search returns; a check must not call `next` on an iterator that it kept, for
// it would run the step that is running.

#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <unordered_set>

#include "search/file_search_strategy.h"

namespace QV_2_9 {

namespace internal {
class LookupJournal;
}

class FoundFilesLazyIterator final : public IValidFileIterator, public ISearchResultsContainer {
 public:
  /// None is owned; all must outlive this object. `journal` may be null.
  FoundFilesLazyIterator(IFileSearchStrategy& strategy,
                         IValidatorInternal& validator,
                         internal::LookupJournal* journal = nullptr);

  FoundFilesLazyIterator(const FoundFilesLazyIterator&) = delete;
  FoundFilesLazyIterator& operator=(const FoundFilesLazyIterator&) = delete;

  /// Files `path` like a candidate of a step, under the step of suggested resolutions.
  void addSuggestedResolution(const wchar_t* path);

  /// Goes back to the first valid file; no step runs again.
  void reset() override;
  /// Returns the next valid file, running steps until there is one. Null after the last step.
  ObjectPtr<IValidFile> next() override;

  bool addFoundFile(const wchar_t* path, std::uint32_t step, bool& stop) override;

  /// Plain views of what has been recorded; they never run a step and show nothing until `reset`.
  IValidFileIterator& validFilesIterator() { return m_validFilesIterator; }
  IInvalidFileIterator& invalidFilesIterator() { return m_invalidFilesIterator; }

 private:
  template <class File, class Iterator>
  class FilesIterator final : public Iterator {
   public:
    explicit FilesIterator(std::list<ObjectPtr<File>>& files)
        : m_files(files), m_position(files.begin()) {}

    void reset() override { m_position = m_files.begin(); }
    ObjectPtr<File> next() override {
      if (m_position == m_files.end())
        return nullptr;
      return *m_position++;
    }

   private:
    std::list<ObjectPtr<File>>& m_files;
    typename std::list<ObjectPtr<File>>::iterator m_position;
  };

  struct HashIgnoreCase {
    std::size_t operator()(const wchar_t* path) const;
  };
  struct EqualIgnoreCase {
    bool operator()(const wchar_t* a, const wchar_t* b) const;
  };
  /// The paths of one list, owned by its files: duplicates are found without walking the list.
  using PathSet = std::unordered_set<const wchar_t*, HashIgnoreCase, EqualIgnoreCase>;

  void runStep();
  void runStepForJournal(search_step_t step);
  bool addValidFile(const ObjectPtr<IValidFile>& file, bool& stop);
  bool addInvalidFile(const ObjectPtr<IInvalidFile>& file);

  IFileSearchStrategy& m_strategy;
  IValidatorInternal& m_validator;
  internal::LookupJournal* m_journal;
  std::list<ObjectPtr<IValidFile>> m_validFiles;      // in the order found
  std::list<ObjectPtr<IInvalidFile>> m_invalidFiles;  // in the order found
  FilesIterator<IValidFile, IValidFileIterator> m_validFilesIterator;
  FilesIterator<IInvalidFile, IInvalidFileIterator> m_invalidFilesIterator;
  std::list<ObjectPtr<IValidFile>>::iterator m_cursor;  // the next file to hand out
  std::int32_t m_step = ssArchiveSearchDirs;            // the next step to run
  PathSet m_validPaths;
  PathSet m_invalidPaths;
};

}  // namespace QV_2_9
