// What became of all files of a manifest: the model behind the summary, the JSON document and the
// page of `quiver resolve`.

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lookup.h"
#include "lookup_record.h"

namespace quiver_tool {

enum class FileState { Found, NotFound, NotTried };

/// Why a file was not found, told by its candidates: the nearest miss counts.
enum class MissReason {
  NoCandidate,   ///< No file of this name existed in any place.
  OtherContent,  ///< Files of this name, but with another checksum, time or size.
  Unusable,      ///< Files of this name that could not be opened, or directories.
  Failed,        ///< A check of another kind rejected the candidates.
};

/// A file as the manifest records it.
struct RecordedFile {
  QV_2_9::search_category_t category = QV_2_9::scSourceFiles;
  std::wstring name;
  std::wstring module;                ///< The recorded path of its binary; empty for a binary.
  std::optional<std::size_t> binary;  ///< Where its binary stands among the files of the manifest.
  std::optional<std::wstring> md5;
  std::optional<std::int64_t> size;
  std::optional<std::int64_t> modificationTime;
};

struct ResolvedFile {
  RecordedFile recorded;
  FileState state = FileState::NotTried;
  std::optional<FoundFile> found;
  std::vector<RejectedFile> rejected;  ///< Of a file that was not found.
  std::optional<QV_2_9::archive_result_t> archived;
  std::int64_t microseconds = 0;
  LookupRecord journal;  ///< Empty unless journals are kept.
};

/// A rule that suggested paths.
struct UsedMapping {
  std::wstring from;
  std::wstring to;
  bool isLearned = false;
  std::int64_t confirmations = 0;  ///< Counted in runs that learn.
};

struct Resolution {
  std::wstring manifest;
  std::vector<ResolvedFile> files;
  std::vector<UsedMapping> mappings;
  UnusableDirectories unusable;
  TextPool texts;  ///< Of the journals.
  std::int64_t microseconds = 0;
  bool isInterrupted = false;
};

/// Only for a file that was not found.
MissReason missReason(const ResolvedFile& file);

/// Returns a word for programs, such as "no-candidate".
const char* missWord(MissReason reason);

/// Returns it for people, such as "no file of this name".
const char* missWords(MissReason reason);

/// Returns "found", "not-found" or "not-tried".
const char* stateWord(FileState state);

/// Returns one sentence on why a file was not found; empty for other files.
std::string missSentence(const ResolvedFile& file);

}  // namespace quiver_tool
