// Path mappings: "what was recorded below /build/agent/work lies below /home/u/proj".
//
//   ObjectPtr<IPathMappings> mappings = IPathMappings::create();
//   mappings->addMapping(L"C:\\ci\\main", L"/home/u/main");
//   manager->setSearchStartedCallback(context, L"viewer", mappings->getSearchStartedCallback());
//   manager->setFilesFoundCallback(context, L"viewer", mappings->getFilesFoundCallback());
//   manager->setNoFilesFoundCallback(context, L"viewer", mappings->getNoFilesFoundCallback());
//
// The search-started callback suggests where the mappings put the file; a suggestion is checked as
// any candidate is: where the caller passes a check, a wrong mapping costs time and never yields a
// wrong file. Without one the first place that has a file of the name wins, and mappings come
// first. The two others watch what became of it: they learn mappings from files that a check
// confirmed, count confirmations, and drop a learned mapping once a check has rejected the file it
// led to. After the first file of a tree the rest is found without a scan.

#pragma once

#include <stdint.h>

#include "quiver/export.h"
#include "quiver/object.h"

namespace QV_2_9 {

class IFilesFoundCallback;
class INoFilesFoundCallback;
class ISearchManipulator;
class ISearchStartedCallback;

/// One mapping as it was when it was asked for.
///
/// Implemented by: the library.
/// Lifetime: counted; survives the mapping.
/// Threads: under the caller's own locking.
/// Failure: none.
class IPathMapping : public IQVObject {
 public:
  /// Returns the recorded directory, without a separator at its end unless it is a root. Empty for
  /// a mapping of relative names; never null.
  virtual const wchar_t* getRecordedPrefix() = 0;  // 4
  /// Returns the directory of this machine, in the same form. Never null.
  virtual const wchar_t* getLocalPrefix() = 0;  // 5
  /// Returns false for a mapping set by hand.
  virtual bool isLearned() = 0;  // 6
  /// Returns how many of its suggestions a check has confirmed.
  virtual int32_t getConfirmationCount() = 0;  // 7
};

/// A set of mappings with the callbacks that use and improve it.
///
/// Recorded prefixes are directories in either style of path, with drives, shares or neither; they
/// match whole names, and letter case does not count in Windows paths. Below the prefixes names are
/// taken as they were recorded, so what is learned from a tree whose directories differ in case
/// leads no higher than to the last of them, unless this system ignores case. Mappings set by hand
/// come first, in their order, and stay whatever checks say. Learned ones follow, the one last
/// learned or confirmed first; the last of more than 256 is forgotten.
///
/// Implemented by: the library.
/// Lifetime: counted. It owns its callbacks, which leave their holders with the last reference; not
///           to be dropped inside a callback of one of the three kinds.
/// Threads: any, also while searches run; except that user's callbacks are set and default
///          callbacks wrapped between searches.
/// Failure: false or null.
class IPathMappings : public IQVObject {
 public:
  /// Adds a mapping by hand, replacing one with the same recorded prefix that was. False when
  /// either prefix is null or `localPrefix` is empty. An empty `recordedPrefix` stands for relative
  /// names.
  virtual bool addMapping(const wchar_t* recordedPrefix, const wchar_t* localPrefix) = 0;  // 4
  /// Learns from a file that was resolved: what is in front of the longest common end of the two
  /// paths, in whole names, is the mapping. False when the paths have no name in common or nothing
  /// else.
  virtual bool learn(const wchar_t* recordedPath, const wchar_t* localPath) = 0;  // 5
  /// Forgets all mappings.
  virtual void clearMappings() = 0;       // 6
  virtual int32_t getMappingCount() = 0;  // 7
  /// Returns the mapping at `index`, in the order of suggestion. Null behind the last one.
  virtual ObjectPtr<IPathMapping> getMapping(int32_t index) = 0;  // 8

  // The callbacks to install. They live as long as this object; never null.
  virtual ISearchStartedCallback* getSearchStartedCallback() = 0;  // 9
  virtual IFilesFoundCallback* getFilesFoundCallback() = 0;        // 10
  virtual INoFilesFoundCallback* getNoFilesFoundCallback() = 0;    // 11

  // Callbacks to pass each question on to. Plain pointers: set null before destroying one. Theirs
  // is the answer, and their suggestions come first; without one the search goes on, takes the
  // first file, and ends with nothing when none was found.
  virtual void setSearchStartedUserCallback(ISearchStartedCallback* callback) = 0;  // 12
  virtual void setFilesFoundUserCallback(IFilesFoundCallback* callback) = 0;        // 13
  virtual void setNoFilesFoundUserCallback(INoFilesFoundCallback* callback) = 0;    // 14

  /// Makes the three callbacks the user's callbacks of a manipulator's default callbacks for `key`.
  /// The manipulator does not own them: set null there before this object goes. False when either
  /// argument is null.
  virtual bool useInDefaultCallbacks(ISearchManipulator* manipulator,
                                     const wchar_t* key) = 0;  // 15

  /// Returns a new, empty set.
  QV_API static ObjectPtr<IPathMappings> create();
};

}  // namespace QV_2_9
