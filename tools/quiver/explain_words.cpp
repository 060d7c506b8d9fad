#include "explain_words.h"

#include "words.h"

namespace quiver_tool {

std::string directoryWords(const StoryDirectory& directory) {
  const std::string count = std::to_string(directory.entries);
  switch (directory.state) {
    case QV_2_9::jdMissing:
      return "does not exist";
    case QV_2_9::jdUnreadable:
      return "cannot be read";
    case QV_2_9::jdRepeated:
      return "was searched before";
    case QV_2_9::jdNotSearched:
      return "not searched, a file was confirmed before";
    case QV_2_9::jdSymbolServer:
      return "a symbol server, no directory";
    default:
      break;
  }
  const std::string until =
      directory.state == QV_2_9::jdEnded ? ", until a file was confirmed" : "";
  if (directory.entries == 0)
    return "searched" + until;
  const std::string amount =
      directory.isFromIndex ? count + " of that name in the index"
                            : count + (directory.entries == 1 ? " entry read" : " entries read");
  return amount + until;
}

std::string candidateWords(const StoryCandidate& candidate) {
  const bool isValid = candidate.confidence != -1;
  const std::string verdict = isValid
                                  ? std::string("valid, ") + confidenceWords(candidate.confidence)
                                  : "rejected, it " + reasonWords(candidate.message);
  switch (candidate.outcome) {
    case QV_2_9::jcMissing:
      return "does not exist";
    case QV_2_9::jcDuplicate:
      return "seen before (" + verdict + ")";
    default:
      return verdict;
  }
}

const char* serverWords(QV_2_9::journal_server_outcome_t outcome) {
  switch (outcome) {
    case QV_2_9::jsFound:
      return "has it";
    case QV_2_9::jsMissing:
      return "does not have it";
    case QV_2_9::jsMismatch:
      return "has another file there";
    case QV_2_9::jsFailed:
      return "gave no useful answer";
    case QV_2_9::jsLeftAlone:
      return "was not asked";
    case QV_2_9::jsCanceled:
      break;
  }
  return "was stopped";
}

const char* idleWords(QV_2_9::journal_idle_t idle) {
  switch (idle) {
    case QV_2_9::jiNoEnvironment:
    case QV_2_9::jiNoDirectories:
      return "no place is configured for it";
    case QV_2_9::jiNoBinary:
      return "the binary is not known; --binary names it";
    case QV_2_9::jiBareBinary:
      return "the binary has no directory; --binary names it with its path";
    case QV_2_9::jiNotForCategory:
      return "files of this kind are not looked for in this way";
    case QV_2_9::jiNotIdle:
      break;
  }
  return "";
}

const char* notRunWords(QV_2_9::journal_not_run_t reason, bool isFound) {
  if (isFound)
    return "the file was found before";
  return reason == QV_2_9::jnCanceled ? "the search was canceled" : "the lookup ended before";
}

}  // namespace quiver_tool
