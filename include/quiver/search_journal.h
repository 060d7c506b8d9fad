// A journal of lookups: what was tried, in order, and what became of it. For whoever asks "why was
// my file not found?".
//
// The events of one lookup:
//
//   began
//     suggestion, and its candidate         for each suggested path
//     step began
//       candidate | directory | server      a directory follows the candidates it yielded
//     step ended                            also when an exception leaves it
//     ... further steps, some of them while the files-found callback walks on; then candidates that
//     the no-files-found callback has validated
//     step not run                          for each step that is left
//   ended
//
// A callback that starts a lookup of its own with the same file search nests the events of that one
// between two of these.

#pragma once

#include <stdint.h>

#include "quiver/export.h"
#include "quiver/file_search.h"
#include "quiver/object.h"
#include "quiver/search_dirs.h"
#include "quiver/search_results.h"

namespace QV_2_9 {

/// A lookup begins. Empty texts stand for what was not given.
struct JournalLookup {
  search_category_t category;
  const wchar_t* name;               ///< As it is searched for on this system.
  const wchar_t* nameInDirectories;  ///< What is searched for in directories; its tails count too.
  const wchar_t* binary;             ///< Empty for a binary.
  const wchar_t* checksum;           ///< Empty for a binary.
};

/// A path is tried before any step.
struct JournalSuggestion {
  const wchar_t* path;
  bool isFromCallback;  ///< Of the search-started callback; else the argument of the lookup.
};

/// What became of a directory of a scan.
enum journal_directory_state_t : int32_t {
  jdSearched = 0,      ///< To its end.
  jdEnded = 1,         ///< Until a check confirmed a file, which ends the scan.
  jdMissing = 2,       ///< There is no directory of this name.
  jdUnreadable = 3,    ///< It exists and cannot be read.
  jdRepeated = 4,      ///< It was searched before in the same scan.
  jdNotSearched = 5,   ///< The scan had ended, or the name has nothing to search for.
  jdSymbolServer = 6,  ///< It names a symbol server; see the server events of the step.
};

/// A directory has been dealt with.
struct JournalDirectory {
  const wchar_t* path;  ///< As it was given.
  bool isRecursive;
  journal_directory_state_t state;
  bool isFromIndex;  ///< Answered from what was known of the tree; else read.
  int64_t entries;   ///< Entries read, or found where the system or the index was asked by name.
};

/// What became of a candidate.
enum journal_candidate_outcome_t : int32_t {
  jcMissing = 0,    ///< Nothing bears the name.
  jcDuplicate = 1,  ///< The same verdict on the same path as before.
  jcInvalid = 2,    ///< It exists and was rejected.
  jcValid = 3,      ///< It passed.
};

/// A path was tried.
struct JournalCandidate {
  const wchar_t* path;  ///< Canonical and absolute; as it was offered when it is missing.
  uint32_t stepValue;   ///< The step; 0x10000 added for a hit in a tree.
  journal_candidate_outcome_t outcome;
  int32_t errorCode;       ///< Of an invalid file, also a duplicate; -1 otherwise.
  const wchar_t* message;  ///< Of an invalid file, also a duplicate; empty otherwise.
  int32_t confidence;      ///< Of a valid file, also a duplicate; -1 otherwise.
};

/// What a store of symbol files answered.
enum journal_server_outcome_t : int32_t {
  jsFound = 0,      ///< It had the file.
  jsMissing = 1,    ///< It does not have the file.
  jsMismatch = 2,   ///< It has a file there that does not belong to the binary.
  jsFailed = 3,     ///< No useful answer: unreachable, refused, broken off, not to be written.
  jsLeftAlone = 4,  ///< It was not asked; the detail says why.
  jsCanceled = 5,   ///< The caller gave the download up.
};

/// A store of a symbol server element was asked, or left out. Secrets of addresses are not shown.
struct JournalServer {
  const wchar_t* element;   ///< The store: a directory or an address. Empty when none was reached.
  const wchar_t* place;     ///< Where in it the file was looked for; may be empty.
  const wchar_t* identity;  ///< What the binary asks for: "app.pdb/0123...1"; empty when unknown.
  journal_server_outcome_t outcome;
  const wchar_t* detail;  ///< For people; may be empty.
  int64_t bytes;          ///< Transferred, or read from a directory.
};

/// Why a step that ran had nothing to do.
enum journal_idle_t : int32_t {
  jiNotIdle = 0,         ///< It looked at something.
  jiNoEnvironment = 1,   ///< The file search has no search environment.
  jiNoDirectories = 2,   ///< No place is configured for it.
  jiNoBinary = 3,        ///< The binary to look around was not given.
  jiNotForCategory = 4,  ///< Files of this category are not looked for in this way.
  jiBareBinary = 5       ///< The binary to look around is known by its bare name alone.
};

/// A step is over.
struct JournalStepEnd {
  search_step_t step;
  int64_t microseconds;
  journal_idle_t idle;
};

/// Why a step did not run.
enum journal_not_run_t : int32_t {
  jnAnswered = 0,  ///< The answer was known before.
  jnCanceled = 1,  ///< The search-started callback canceled the search.
  jnRefused = 2,   ///< The files-found callback took none of the files found before, and stopped.
  jnFailed = 3,    ///< The lookup left with an exception.
};

/// A step that does not run in this lookup.
struct JournalStepNotRun {
  search_step_t step;
  journal_not_run_t reason;
};

/// Who gave the answer.
enum journal_answerer_t : int32_t {
  jaNobody = 0,                 ///< No file was found.
  jaSuggestion = 1,             ///< The suggestion of the lookup.
  jaSearchStartedCallback = 2,  ///< A suggestion of the search-started callback.
  jaStep = 3,                   ///< A step.
  jaFilesFoundCallback = 4,     ///< The files-found callback chose it.
  jaNoFilesFoundCallback = 5,   ///< The no-files-found callback supplied it.
  jaException = 6,              ///< None: an exception leaves the lookup.
};

/// A lookup is over.
struct JournalAnswer {
  const wchar_t* path;  ///< Null when there is none.
  int32_t step;         ///< Of the answer, as `IValidFile::getStep`; 0 without one.
  int32_t confidence;   ///< Of the answer; -1 without one.
  journal_answerer_t answerer;
  int64_t microseconds;  ///< Of the whole lookup.
};

/// Hears of lookups. Texts of events are never null but where it is said, and borrowed for the
/// call.
///
/// Implemented by: the caller.
/// Lifetime: the caller's own; must outlive the file search that it was given to.
/// Threads: the thread of the lookup. Lookups of one file search at once call at once; give each
///          thread a file search and a journal of its own, or lock.
/// Failure: an exception leaves through the lookup.
class ISearchJournal {
 public:
  virtual void onLookupBegan(const JournalLookup& event) = 0;     // 0
  virtual void onSuggestion(const JournalSuggestion& event) = 0;  // 1
  virtual void onStepBegan(search_step_t step) = 0;               // 2
  virtual void onDirectory(const JournalDirectory& event) = 0;    // 3
  virtual void onCandidate(const JournalCandidate& event) = 0;    // 4
  virtual void onServer(const JournalServer& event) = 0;          // 5
  virtual void onStepEnded(const JournalStepEnd& event) = 0;      // 6
  virtual void onStepNotRun(const JournalStepNotRun& event) = 0;  // 7
  virtual void onLookupEnded(const JournalAnswer& event) = 0;     // 8

 protected:
  ~ISearchJournal() = default;
};

/// Returns a new file search like that of `IFileSearch::create` that tells `journal` of its
/// lookups. Empty names are no lookups. A null journal hears nothing and costs nothing.
QV_API ObjectPtr<IFileSearch> createFileSearchWithJournal(const ObjectPtr<ISearchEnv>& searchEnv,
                                                          ISearchJournal* journal);

}  // namespace QV_2_9
