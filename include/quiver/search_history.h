// What requests were resolved to: a path per request, or that the file is to stay unresolved.
//
// A request is a file name, with its binary and the binary's checksum for symbol and source files.
// All parts compare exactly, letter case included. The history lives in memory only.

#pragma once

#include <stdint.h>

#include "quiver/export.h"
#include "quiver/object.h"

namespace QV_2_9 {

/// What one request was resolved to; never changes.
///
/// Implemented by: the library.
/// Lifetime: counted; survives its replacement in the history.
/// Threads: under the caller's own locking.
/// Failure: none.
class IFileAssociation : public IQVObject {
 public:
  /// Returns the path. Null when the file was left unresolved on purpose.
  virtual const wchar_t* getPath() = 0;  // 4
};

/// Associations by request, one per request.
///
/// Null strings count as empty. An `add` with an empty path records that the file is to stay
/// unresolved; it replaces an earlier association and returns the new one. A `find` returns null
/// when nothing was recorded.
///
/// Implemented by: the library.
/// Lifetime: counted.
/// Threads: one at a time; searches that share a history must not run at once.
/// Failure: none.
class ISearchHistory : public IQVObject {
 public:
  virtual ObjectPtr<IFileAssociation> addBinFileAssociation(const wchar_t* binFile,
                                                            const wchar_t* path) = 0;  // 4
  virtual ObjectPtr<IFileAssociation> addSymFileAssociation(const wchar_t* symFile,
                                                            const wchar_t* binaryFile,
                                                            const wchar_t* checksum,
                                                            const wchar_t* path) = 0;  // 5
  virtual ObjectPtr<IFileAssociation> addSrcFileAssociation(const wchar_t* srcFile,
                                                            const wchar_t* binaryFile,
                                                            const wchar_t* checksum,
                                                            const wchar_t* path) = 0;  // 6
  /// Forgets one category, or all of them for `scAllFiles`. Any other value does nothing.
  virtual void clearAssociations(int32_t category) = 0;                                    // 7
  virtual ObjectPtr<IFileAssociation> findBinFileAssociation(const wchar_t* binFile) = 0;  // 8
  virtual ObjectPtr<IFileAssociation> findSymFileAssociation(const wchar_t* symFile,
                                                             const wchar_t* binaryFile,
                                                             const wchar_t* checksum) = 0;  // 9
  virtual ObjectPtr<IFileAssociation> findSrcFileAssociation(const wchar_t* srcFile,
                                                             const wchar_t* binaryFile,
                                                             const wchar_t* checksum) = 0;  // 10

  /// Returns a new, empty history.
  QV_API static ObjectPtr<ISearchHistory> create();
};

}  // namespace QV_2_9
