// Everything a search is configured with, in one object.

#pragma once

#include "quiver/environment_info.h"
#include "quiver/event_generator.h"
#include "quiver/export.h"
#include "quiver/object.h"
#include "quiver/search_callbacks.h"
#include "quiver/search_dirs.h"

namespace QV_2_9 {

/// The read side of a search environment.
///
/// Categories are never merged here: a search asks for its own category, then for `scAllFiles`.
///
/// Implemented by: the library; a caller may bring its own.
/// Lifetime: counted.
/// Threads: configure it before searches run; holders are cleared under their class locks.
/// Failure: none; what is absent is skipped by the search.
class ISearchEnv : public IQVObject {
 public:
  /// Returns the ordinary search directories of `category`. Null when there are none.
  virtual ObjectPtr<ISearchDirIterator> getSearchDirs(search_category_t category) = 0;  // 4
  /// Returns the archive search directories of `category`. Null when there are none.
  virtual ObjectPtr<ISearchDirIterator> getArchiveSearchDirs(search_category_t category) = 0;  // 5
  // The holders are the environment's own: bind them to a reference, a copy registers itself.
  virtual CallbackHolder<ISearchStartedCallback>& getSearchStartedCallback() = 0;  // 6
  virtual CallbackHolder<IFilesFoundCallback>& getFilesFoundCallback() = 0;        // 7
  virtual CallbackHolder<INoFilesFoundCallback>& getNoFilesFoundCallback() = 0;    // 8
  virtual CallbackHolder<IConfidenceLevelPolicyCallback>&
  getConfidenceLevelPolicyCallback() = 0;  // 9
  /// Returns what is known of the analysed system. Null when nobody said.
  virtual ObjectPtr<IEnvironmentInfo> getEnvironmentInfo() = 0;  // 10
};

/// A search environment that the caller fills. Containers are held, not copied; callbacks are
/// referred to weakly and empty themselves when the callback object goes.
///
/// Implemented by: the library.
/// Lifetime: counted.
/// Threads: configure it before searches run.
/// Failure: none; null and empty holders take a part out again.
class IEditableSearchEnv : public ISearchEnv {
 public:
  virtual void setSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs) = 0;         // 11
  virtual void setArchiveSearchDirs(const ObjectPtr<ISearchDirContainer>& dirs) = 0;  // 12
  virtual void setSearchStartedCallback(
      const CallbackHolder<ISearchStartedCallback>& callback) = 0;  // 13
  virtual void setFilesFoundCallback(
      const CallbackHolder<IFilesFoundCallback>& callback) = 0;  // 14
  virtual void setNoFilesFoundCallback(
      const CallbackHolder<INoFilesFoundCallback>& callback) = 0;  // 15
  virtual void setConfidenceLevelPolicyCallback(
      const CallbackHolder<IConfidenceLevelPolicyCallback>& callback) = 0;       // 16
  virtual void setEnvironmentInfo(const ObjectPtr<IEnvironmentInfo>& info) = 0;  // 17

  /// Returns a new environment with every part empty.
  QV_API static ObjectPtr<IEditableSearchEnv> create();
};

}  // namespace QV_2_9
