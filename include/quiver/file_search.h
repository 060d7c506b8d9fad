// The search itself: where is this binary, its symbol file, this source file?

#pragma once

#include "quiver/export.h"
#include "quiver/object.h"
#include "quiver/search_env.h"
#include "quiver/search_results.h"
#include "quiver/symbol_download.h"
#include "quiver/validation.h"

namespace QV_2_9 {

/// Finds files through one search environment.
///
/// Names are recorded paths or bare file names; they are looked for step by step (search_results.h)
/// until a file is found. All strings are null-terminated and copied; null means empty. A
/// `suggestedResolution` is tried before any step. `validatorCallback` is the caller's own check.
/// Every pointer argument may be null and is borrowed for the call.
///
/// Implemented by: the library.
/// Lifetime: counted; the count may change on any thread, but inside a callback no reference may be
///           taken or dropped while another thread may drop the last reference of a file search.
/// Threads: any number of searches at once; each runs on its caller's thread. They may share an
///          environment and its information, to which nobody else takes or drops a reference
///          meanwhile.
/// Failure: null when nothing was found, and for an empty name. Exceptions come only from callbacks
///          and from memory running out.
class IFileSearch : public IQVObject {
 public:
  /// Returns the binary module recorded as `binFile`.
  virtual ObjectPtr<IValidFile> findBinFile(const wchar_t* binFile,
                                            IValidatorCallback* validatorCallback,
                                            const wchar_t* suggestedResolution) = 0;  // 4
  /// Returns the symbol file recorded as `symFile` of `binaryFile`; `checksum` is the binary's
  /// recorded checksum text, handed to the callbacks.
  virtual ObjectPtr<IValidFile> findSymFile(const wchar_t* symFile,
                                            const wchar_t* binaryFile,
                                            const wchar_t* checksum,
                                            IValidatorCallback* validatorCallback,
                                            const wchar_t* suggestedResolution,
                                            ISymbolDownloadProgress* downloadProgress) = 0;  // 5
  /// Returns the source file recorded as `srcFile` of `binaryFile`.
  virtual ObjectPtr<IValidFile> findSrcFile(const wchar_t* srcFile,
                                            const wchar_t* binaryFile,
                                            const wchar_t* checksum,
                                            IValidatorCallback* validatorCallback,
                                            const wchar_t* suggestedResolution) = 0;  // 6

  /// Returns a new file search over `searchEnv`, which it keeps alive. With a null environment only
  /// suggestions, the name itself and the system's own places are searched.
  QV_API static ObjectPtr<IFileSearch> create(const ObjectPtr<ISearchEnv>& searchEnv);
};

}  // namespace QV_2_9
