// Where resolutions are remembered: contexts for a result directory, for the user or for any path,
// chained child to parent, and the manager that builds search environments from them.
//
// A context is its name: two objects with equal names (letter case counts) are one context. The
// manager keeps for every name search directories and callbacks, each filed under keys that callers
// choose, and an archive directory for copies of resolved files. All of it lives in memory, except
// the copies. On disk, a result directory R that is given to `getResultDirContext`:
//
//   R/
//   |- binaries/  symbols/  sources/  all/    searched early, when they are there
//   `- archive/                               made by the first `archiveFile`
//      |- binaries/
//      |  `- app.dll/
//      |     |- 0cc175b9c0f1b6a831c399e269772661/app.dll
//      |     `- 92eb5ffee6ae2fec3ad71c777531578f/app.dll     another version of the same file
//      |- symbols/ ...
//      |- sources/ ...
//      `- all/ ...

#pragma once

#include <stdint.h>

#include "quiver/environment_info.h"
#include "quiver/export.h"
#include "quiver/file_search.h"
#include "quiver/object.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_dirs.h"
#include "quiver/search_env.h"

namespace QV_2_9 {

/// What became of a file that was to be archived. These are no `status_t`; 1 is never used.
enum archive_result_t : int32_t {
  arArchived = 0,               ///< The file was copied into the archive.
  arNoChecksumCalculator = 2,   ///< There is no checksum calculator.
  arNoChecksum = 3,             ///< The file is missing or cannot be read.
  arCannotCreateDirectory = 4,  ///< A folder of the archive is missing and cannot be created.
  arCopyFailed = 5,             ///< It could not be copied or kept changing; nothing was left.
  arAlreadyArchived = 6,        ///< The archive has this version of the file.
  arNoArchiveDir = 7,           ///< No context of the chain has an archive directory.
};

/// The scope in which resolutions are remembered.
///
/// Implemented by: the library; a caller may bring its own.
/// Lifetime: counted.
/// Threads: under the caller's own locking.
/// Failure: none.
class IResolutionContext : public IQVObject {
 public:
  /// Returns the name. Never null for a context made by the manager; null counts as empty.
  virtual const wchar_t* getName() = 0;  // 4
};

/// What is remembered for every context, one object per process.
///
/// Contexts are passed as borrowed pointers and only their names are kept; where nothing else is
/// said, a null context is the one with the empty name. Callbacks are referred to weakly, and an
/// entry empties itself when its callback object goes. Strings are copied.
///
/// Implemented by: the library.
/// Lifetime: counted, one object per process; with the last reference everything is forgotten. That
///           one must not be dropped inside a search callback: it would hang.
/// Threads: one at a time, `create` included.
/// Failure: false for a null key, null for a path that names nothing.
class IResolutionContextMgr : public IQVObject {
 public:
  /// Makes what is remembered for `parent` apply to searches in `child` too, behind what `child`
  /// has. Replaces an earlier parent. Always true. The caller must not build a cycle; a null
  /// `parent` is ignored.
  virtual bool setParentContext(IResolutionContext* child, IResolutionContext* parent) = 0;  // 4
  /// Files `dirs` under `key`, replacing what was there. Null takes the directories out again; a
  /// null `key` is ignored.
  virtual void setSearchDirs(IResolutionContext* context,
                             const ObjectPtr<ISearchDirContainer>& dirs,
                             const wchar_t* key) = 0;  // 5
  /// Sets the directory for copies. Null is ignored, empty takes it away.
  virtual void setArchiveDir(IResolutionContext* context, const wchar_t* dir) = 0;  // 6
  // Each files a callback of its kind under `key`; null takes it out again. False for a null key.
  // Each also waits for running callbacks of the other kinds that are filed under that key.
  virtual bool setSearchStartedCallback(IResolutionContext* context,
                                        const wchar_t* key,
                                        ISearchStartedCallback* callback) = 0;  // 7
  virtual bool setFilesFoundCallback(IResolutionContext* context,
                                     const wchar_t* key,
                                     IFilesFoundCallback* callback) = 0;  // 8
  virtual bool setNoFilesFoundCallback(IResolutionContext* context,
                                       const wchar_t* key,
                                       INoFilesFoundCallback* callback) = 0;  // 9
  virtual bool setConfidenceLevelPolicyCallback(
      IResolutionContext* context,
      const wchar_t* key,
      IConfidenceLevelPolicyCallback* callback) = 0;  // 10
  /// Returns a new search environment with what `context` and its ancestors have: the directories
  /// of all their keys (the nearest context first, in each by ascending key), their archives, and
  /// per kind the nearest callback filed under `key`. Without callbacks when `key` is null, with
  /// nothing but `envInfo` when `context` is.
  virtual ObjectPtr<ISearchEnv> createSearchEnv(
      IResolutionContext* context,
      const wchar_t* key,
      const ObjectPtr<IEnvironmentInfo>& envInfo) = 0;  // 11
  /// Returns a new file search over such an environment.
  virtual ObjectPtr<IFileSearch> createFileSearch(
      IResolutionContext* context,
      const wchar_t* key,
      const ObjectPtr<IEnvironmentInfo>& envInfo) = 0;  // 12
  /// Returns the context of a result directory, its own folders filed as search directories and
  /// "archive" in it as the archive directory. Null when `resultDir` is null or empty.
  virtual ObjectPtr<IResolutionContext> getResultDirContext(const wchar_t* resultDir) = 0;  // 13
  /// Returns the context of the user, named by the login name.
  virtual ObjectPtr<IResolutionContext> createUserContext() = 0;  // 14
  /// Returns the context named by the canonical absolute form of `path`. `isDirectory`: the whole
  /// text is a directory. Null when `path` is null or empty.
  virtual ObjectPtr<IResolutionContext> createContext(const wchar_t* path,
                                                      bool isDirectory) = 0;  // 15
  /// Copies `file` into the archive of the nearest context that has one, under a category's folder
  /// (a `search_category_t`; any other value is `scAllFiles`). Folders made on the way stay, also
  /// on failure. `arNoArchiveDir` for a null context.
  virtual archive_result_t archiveFile(IResolutionContext* context,
                                       const wchar_t* file,
                                       int32_t category) = 0;  // 16

  /// Returns the one manager, making an empty one when there is none.
  QV_API static ObjectPtr<IResolutionContextMgr> create();
};

}  // namespace QV_2_9
