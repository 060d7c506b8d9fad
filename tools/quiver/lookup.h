// One lookup through the library, with everything that it showed on the way.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "command_line.h"
#include "quiver/resolution_context.h"
#include "quiver/search_journal.h"
#include "unusable_directories.h"

namespace quiver_tool {

struct FoundFile {
  std::wstring path;
  std::int32_t step = 0;
  std::int32_t confidence = 0;
};

struct RejectedFile {
  std::wstring path;
  std::int32_t step = 0;
  std::int32_t code = 0;
  std::wstring
      message;  ///< A catalogue key such as "%CantOpenFile"; empty when no reason was given.
};

struct Outcome {
  std::optional<FoundFile> found;
  std::vector<FoundFile> candidates;  ///< Every valid file seen, in the order found.
  std::vector<RejectedFile> rejected;
  UnusableDirectories unusable;  ///< Of those given for this kind of file.
  bool isSuggestionMissing = false;
  bool isInterrupted = false;                        ///< Ctrl-C stopped a download.
  std::optional<QV_2_9::archive_result_t> archived;  ///< What became of the answer's copy.
};

/// Looks for the file. The first valid file is the answer; with `isAll` the remaining steps run
/// too. With `isArchivingFound` the answer is copied into the nearest archive. `journal` may be
/// null.
Outcome lookUp(const FindOptions& options, QV_2_9::ISearchJournal* journal = nullptr);

}  // namespace quiver_tool
