// English words for the events of a journal.

#pragma once

#include <string>

#include "explain_story.h"

namespace quiver_tool {

/// Returns for example "does not exist" or "1234 entries read".
std::string directoryWords(const StoryDirectory& directory);

/// Returns for example "rejected, it has another checksum".
std::string candidateWords(const StoryCandidate& candidate);

/// Returns for example "does not have it".
const char* serverWords(QV_2_9::journal_server_outcome_t outcome);

/// Returns for example "nothing is configured for it". Empty for a step that had something to do.
const char* idleWords(QV_2_9::journal_idle_t idle);

/// Returns why a step did not run. `isFound` tells whether the lookup found its file.
const char* notRunWords(QV_2_9::journal_not_run_t reason, bool isFound);

}  // namespace quiver_tool
