// The file search front end: the object that answers a caller's lookups.
//
// It holds nothing per search: validator, strategy and results live on the stack of one call, so
// one object serves any number of searches, also at once.

#pragma once

#include "vesk/trace.h"

#include "events/confidence_level_policy_wrapper.h"
#include "quiver/file_search.h"
#include "quiver/ref_count.h"
#include "quiver/search_journal.h"
#include "search/file_search_strategy.h"

namespace QV_2_9 {

class BasicFileSearchStrategy;
class FoundFilesLazyIterator;
class StringContainer;
class Validator;

namespace internal {
class LookupJournal;
}

class FileSearch final : public RefCountImpl<IFileSearch> {
 public:
  /// `journal` is the caller's and may be null.
  explicit FileSearch(const ObjectPtr<ISearchEnv>& searchEnv, ISearchJournal* journal = nullptr);

  ObjectPtr<IValidFile> findBinFile(const wchar_t* binFile,
                                    IValidatorCallback* validatorCallback,
                                    const wchar_t* suggestedResolution) override;
  ObjectPtr<IValidFile> findSymFile(const wchar_t* symFile,
                                    const wchar_t* binaryFile,
                                    const wchar_t* checksum,
                                    IValidatorCallback* validatorCallback,
                                    const wchar_t* suggestedResolution,
                                    ISymbolDownloadProgress* downloadProgress) override;
  ObjectPtr<IValidFile> findSrcFile(const wchar_t* srcFile,
                                    const wchar_t* binaryFile,
                                    const wchar_t* checksum,
                                    IValidatorCallback* validatorCallback,
                                    const wchar_t* suggestedResolution) override;

 private:
  ObjectPtr<IValidFile> findFile(BasicFileSearchStrategy& strategy,
                                 Validator& validator,
                                 const wchar_t* suggestedResolution);
  ObjectPtr<IValidFile> findFile(IFileSearchStrategy& strategy,
                                 IValidatorInternal& validator,
                                 const wchar_t* suggestedResolution,
                                 internal::LookupJournal* journal);
  bool fireSearchStarted(IFileSearchStrategy& strategy, StringContainer& suggestions);
  ObjectPtr<IValidFile> chooseFoundFile(vesk_1_8::Trace& trace,
                                        IFileSearchStrategy& strategy,
                                        FoundFilesLazyIterator& files,
                                        const ObjectPtr<IValidFile>& first,
                                        internal::LookupJournal* journal);
  ObjectPtr<IValidFile> askForFile(vesk_1_8::Trace& trace,
                                   IFileSearchStrategy& strategy,
                                   FoundFilesLazyIterator& files,
                                   internal::LookupJournal* journal);

  ObjectPtr<ISearchEnv> m_pSearchEnv;  // may be null
  ISearchJournal* const m_journal;     // may be null
  ConfidenceLevelPolicyWrapper m_confidenceLevelPolicy;
};

}  // namespace QV_2_9
