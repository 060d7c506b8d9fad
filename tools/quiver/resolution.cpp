#include "resolution.h"

#include <algorithm>
#include <cstddef>

#include "quiver/validation.h"
#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

constexpr std::size_t kMostNamed = 3;

bool isOtherContent(const RejectedFile& file) {
  return file.message == L"%ChecksumMismatch" ||
         file.message == L"%ModificationTimeOrSizeMismatch" ||
         file.code == QV_2_9::ecSourceMismatch;
}

}  // namespace

MissReason missReason(const ResolvedFile& file) {
  if (file.rejected.empty())
    return MissReason::NoCandidate;
  if (std::ranges::any_of(file.rejected, isOtherContent))
    return MissReason::OtherContent;
  const bool isUnusable = std::ranges::any_of(file.rejected, [](const RejectedFile& rejected) {
    return rejected.code == QV_2_9::ecUnusable;
  });
  return isUnusable ? MissReason::Unusable : MissReason::Failed;
}

const char* missWord(MissReason reason) {
  switch (reason) {
    case MissReason::NoCandidate:
      return "no-candidate";
    case MissReason::OtherContent:
      return "other-content";
    case MissReason::Unusable:
      return "unusable";
    case MissReason::Failed:
      break;
  }
  return "failed";
}

const char* missWords(MissReason reason) {
  switch (reason) {
    case MissReason::NoCandidate:
      return "no file of this name";
    case MissReason::OtherContent:
      return "only with other content";
    case MissReason::Unusable:
      return "only what cannot be opened";
    case MissReason::Failed:
      break;
  }
  return "rejected by a check";
}

const char* stateWord(FileState state) {
  switch (state) {
    case FileState::Found:
      return "found";
    case FileState::NotFound:
      return "not-found";
    case FileState::NotTried:
      break;
  }
  return "not-tried";
}

std::string missSentence(const ResolvedFile& file) {
  if (file.state != FileState::NotFound)
    return "";
  if (file.rejected.empty())
    return "no candidate existed in any place searched";
  std::string text;
  const std::size_t named = std::min(file.rejected.size(), kMostNamed);
  for (std::size_t i = 0; i < named; ++i) {
    text += (text.empty() ? "" : ", ") + toBytes(file.rejected[i].path) + " " +
            reasonWords(file.rejected[i].message);
  }
  if (named < file.rejected.size())
    text += ", and " + std::to_string(file.rejected.size() - named) + " more";
  return text;
}

}  // namespace quiver_tool
