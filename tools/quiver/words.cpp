#include "words.h"

#include "quiver/search_results.h"
#include "quiver/validation.h"
#include "text_encoding.h"

namespace quiver_tool {
namespace {

struct Reason {
  const wchar_t* key;
  const char* words;
};

constexpr Reason kReasons[] = {
    {L"%FileDoesNotExist", "does not exist"},
    {L"%FileIsDirectory", "is a directory"},
    {L"%CantOpenFile", "cannot be opened"},
    {L"%ChecksumMismatch", "has another checksum"},
    {L"%ModificationTimeOrSizeMismatch", "has another modification time or size"},
    {L"%SourceFileUpToDate", "is newer than the reference file"},
};

struct Kind {
  const char* one;
  const char* many;
  const char* word;
};

constexpr Kind kindOf(QV_2_9::search_category_t category) {
  switch (category) {
    case QV_2_9::scBinaryFiles:
      return {"binary", "binaries", "bin"};
    case QV_2_9::scSymbolFiles:
      return {"symbol file", "symbol files", "sym"};
    case QV_2_9::scSourceFiles:
      return {"source file", "sources", "src"};
    default:
      return {"file", "files", "all"};
  }
}

}  // namespace

const char* categoryWords(QV_2_9::search_category_t category) {
  return kindOf(category).one;
}

const char* categoryTitle(QV_2_9::search_category_t category) {
  return kindOf(category).many;
}

const char* categoryWord(QV_2_9::search_category_t category) {
  return kindOf(category).word;
}

const char* stepWords(std::int32_t step) {
  switch (step) {
    case QV_2_9::ssArchiveSearchDirs:
      return "archive directories";
    case QV_2_9::ssHighPrioritySearchDirs:
      return "high-priority directories";
    case QV_2_9::ssAbsoluteNameLookup:
      return "the recorded name itself";
    case QV_2_9::ssSystemDirs:
      return "system directories";
    case QV_2_9::ssAroundBinaryLookup:
      return "around the binary";
    case QV_2_9::ssLowPrioritySearchDirs:
      return "low-priority directories";
    case QV_2_9::kSuggestedResolutionStep:
      return "suggested path";
    default:
      return "unknown step";
  }
}

const char* confidenceWords(std::int32_t confidence) {
  return confidence == 0 ? "confirmed" : "not contradicted";
}

const char* codeWords(std::int32_t code) {
  switch (code) {
    case QV_2_9::ecUnusable:
      return "unusable";
    case QV_2_9::ecSourceMismatch:
      return "the source differs";
    case QV_2_9::ecNotSet:
      return "no code";
    default:
      return "code of the check";
  }
}

const char* archiveWords(QV_2_9::archive_result_t code) {
  switch (code) {
    case QV_2_9::arArchived:
      return "archived";
    case QV_2_9::arAlreadyArchived:
      return "already in the archive";
    case QV_2_9::arNoChecksumCalculator:
      return "not archived, checksums cannot be computed";
    case QV_2_9::arNoChecksum:
      return "not archived, the file cannot be read";
    case QV_2_9::arCannotCreateDirectory:
      return "not archived, a folder of the archive cannot be made";
    case QV_2_9::arCopyFailed:
      return "not archived, the copy cannot be written";
    case QV_2_9::arNoArchiveDir:
      return "not archived, there is no archive";
  }
  return "not archived, for an unknown reason";
}

std::string reasonWords(const std::wstring& message) {
  if (message.empty())
    return "was rejected without a reason";
  for (const Reason& reason : kReasons) {
    if (message == reason.key)
      return reason.words;
  }
  return "was rejected with \"" + toBytes(message) + "\"";
}

}  // namespace quiver_tool
