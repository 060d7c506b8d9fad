// Makes searches remember and reuse resolutions: default callbacks around a search history.
//
//   ObjectPtr<IResolutionContext> result = manager->getResultDirContext(L"/results/r1");
//   ObjectPtr<ISearchManipulator> memory =
//       createSearchManipulatorByContext(result, nullptr, nullptr);
//   memory->setSearchStartedMode(L"viewer", hmAdvisory);
//   memory->setFilesFoundMode(L"viewer", hmAdvisory);
//   ObjectPtr<IFileSearch> search = manager->createFileSearch(result.get(), L"viewer", nullptr);

#pragma once

#include <stdint.h>

#include "quiver/export.h"
#include "quiver/object.h"
#include "quiver/resolution_context.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_dirs.h"
#include "quiver/search_history.h"

namespace QV_2_9 {

/// How strongly a default callback uses the history. A value that is none of the enumerators counts
/// as `hmAuthoritative`.
///
/// Whatever the mode, the user's callback of the kind is asked first. When it cancels the search,
/// the history is not consulted; when it declines the files found, modes other than `hmDisabled`
/// take the next file all the same.
enum history_mode_t : int32_t {
  /// Not at all: only the user's callback counts.
  hmDisabled = 0,
  /// Search started: suggest the remembered path and search. Files found: record the choice, by
  /// default the first file. No files found: record nothing.
  hmAdvisory = 1,
  /// As advisory, but: search started cancels the steps, so that only the suggestions are
  /// validated. A cancelled search asks nobody but the no-files-found callback: the user's one must
  /// take the remembered file from the valid files. No files found: record the choice, or with
  /// none that the file is to stay unresolved, which also replaces a path remembered before.
  hmAuthoritative = 2,
};

/// Default callbacks for one context, one per key and kind, that share one history.
///
/// A default callback is made by the first setting for its key and kind, starting with
/// `hmDisabled` and no user's callback, and registers itself with the context manager. When the
/// manipulator goes, they unregister, which also empties an entry that somebody else has taken
/// meanwhile: keep one manipulator per context and key.
///
/// Implemented by: the library.
/// Lifetime: counted; neither the last reference may be dropped nor a default callback made inside
///           a search callback of any kind: it would hang.
/// Threads: one at a time, and not while a search runs with these callbacks.
/// Failure: false for a null key.
class ISearchManipulator : public IQVObject {
 public:
  /// Returns the container that was given or made at creation. It is searched only when the caller
  /// files it with the context manager.
  virtual ObjectPtr<IEditableSearchDirContainer> getSearchDirContainer() = 0;  // 4
  virtual ObjectPtr<ISearchHistory> getSearchHistory() = 0;                    // 5
  // Modes are `history_mode_t`. User's callbacks are plain pointers: set null before destroying
  // one.
  virtual bool setSearchStartedMode(const wchar_t* key, int32_t mode) = 0;  // 6
  virtual bool setSearchStartedUserCallback(const wchar_t* key,
                                            ISearchStartedCallback* callback) = 0;  // 7
  virtual bool setFilesFoundMode(const wchar_t* key, int32_t mode) = 0;             // 8
  virtual bool setFilesFoundUserCallback(const wchar_t* key,
                                         IFilesFoundCallback* callback) = 0;  // 9
  virtual bool setNoFilesFoundMode(const wchar_t* key, int32_t mode) = 0;     // 10
  virtual bool setNoFilesFoundUserCallback(const wchar_t* key,
                                           INoFilesFoundCallback* callback) = 0;  // 11
};

/// Returns a new manipulator. A null `searchDirs` or `history` stands for a new, empty one; a null
/// `context` for the one with the empty name.
QV_API ObjectPtr<ISearchManipulator> createSearchManipulatorByContext(
    ObjectPtr<IResolutionContext> context,
    ObjectPtr<IEditableSearchDirContainer> searchDirs,
    ObjectPtr<ISearchHistory> history);

}  // namespace QV_2_9
