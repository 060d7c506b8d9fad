#include "report.h"

#include <algorithm>
#include <cstddef>

#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

constexpr std::size_t kMostNamed = 5;

std::string line(const std::string& text) {
  return "quiver: " + escapeControls(text) + "\n";
}

std::string stepText(std::int32_t step) {
  return "step " + std::to_string(step) + ", " + stepWords(step);
}

std::string validText(const FoundFile& file, bool isAnswer) {
  return toBytes(file.path) + (isAnswer ? ": found (" : ": also valid (") + stepText(file.step) +
         "; confidence " + std::to_string(file.confidence) + ", " +
         confidenceWords(file.confidence) + ")";
}

std::string rejectedText(const RejectedFile& file) {
  const std::string key = file.message.starts_with(L"%") ? " " + toBytes(file.message) : "";
  return toBytes(file.path) + ": rejected, it " + reasonWords(file.message) + " (" +
         stepText(file.step) + "; code " + std::to_string(file.code) + ", " + codeWords(file.code) +
         key + ")";
}

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

std::string rejectedList(const FindOptions& options, const std::vector<RejectedFile>& files) {
  const std::size_t named = std::min(files.size(), kMostNamed);
  std::vector<std::string> parts;
  for (std::size_t i = 0; i < named; ++i)
    parts.push_back(toBytes(files[i].path) + " " + reasonWords(files[i].message));
  if (named < files.size()) {
    parts.push_back("and " + std::to_string(files.size() - named) + " more" +
                    (options.isVerbose ? "" : " (see -v)"));
  }
  return joined(parts);
}

std::string pathList(const std::vector<std::wstring>& paths) {
  std::vector<std::string> parts;
  for (const std::wstring& path : paths) parts.push_back(toBytes(path));
  return joined(parts);
}

std::string details(const FindOptions& options, const Outcome& outcome) {
  std::string text;
  if (options.isVerbose || options.isAll) {
    for (const FoundFile& file : outcome.candidates)
      text += line(validText(file, &file == &outcome.candidates.front()));
  }
  if (!options.isVerbose)
    return text;
  for (const RejectedFile& file : outcome.rejected) text += line(rejectedText(file));
  return text + unusableLines(outcome.unusable);
}

std::string paths(const FindOptions& options, const Outcome& outcome) {
  if (!outcome.found)
    return "";
  if (!options.isAll)
    return toBytes(outcome.found->path) + "\n";
  std::string text;
  for (const FoundFile& file : outcome.candidates) text += toBytes(file.path) + "\n";
  return text;
}

}  // namespace

std::string notFoundSentence(const FindOptions& options, const Outcome& outcome) {
  std::string text = "no " + std::string(categoryWords(options.category)) + " found for '" +
                     toBytes(options.name) + "': ";
  text += outcome.rejected.empty() ? "no candidate existed in any place searched"
                                   : rejectedList(options, outcome.rejected);
  if (outcome.isSuggestionMissing)
    text += "; the suggested " + toBytes(*options.suggestion) + " does not exist";
  if (!outcome.unusable.missing.empty())
    text += "; no such directory: " + pathList(outcome.unusable.missing);
  if (!outcome.unusable.unreadable.empty())
    text += "; cannot be read: " + pathList(outcome.unusable.unreadable);
  return text;
}

std::string unusableLines(const UnusableDirectories& directories) {
  std::string text;
  for (const std::wstring& path : directories.missing)
    text += line(toBytes(path) + ": no such directory");
  for (const std::wstring& path : directories.unreadable)
    text += line(toBytes(path) + ": cannot be read");
  return text;
}

std::string archivedLine(const Outcome& outcome) {
  if (!outcome.archived)
    return "";
  return line(toBytes(outcome.found->path) + ": " + archiveWords(*outcome.archived) + " (code " +
              std::to_string(*outcome.archived) + ")");
}

Report makeReport(const FindOptions& options, const Outcome& outcome) {
  Report report;
  report.out = options.isJson ? toJson(options, outcome) : paths(options, outcome);
  report.err = details(options, outcome) + archivedLine(outcome);
  if (!outcome.found)
    report.err += line(notFoundSentence(options, outcome));
  return report;
}

}  // namespace quiver_tool
