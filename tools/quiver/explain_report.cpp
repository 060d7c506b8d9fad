#include "explain_report.h"

#include "explain_words.h"
#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

std::string line(const std::string& indent, const std::string& text) {
  return indent + escapeControls(text) + "\n";
}

std::string milliseconds(std::int64_t microseconds) {
  const std::string rest = std::to_string(1000 + microseconds % 1000).substr(1);
  return std::to_string(microseconds / 1000) + "." + rest + " ms";
}

std::string candidateLines(const std::vector<StoryCandidate>& candidates,
                           const std::string& indent) {
  std::string text;
  for (const StoryCandidate& candidate : candidates)
    text += line(indent, toBytes(candidate.path) + ": " + candidateWords(candidate));
  return text;
}

std::string serverLine(const StoryServer& server) {
  std::string text = server.element.empty() ? "a symbol server" : toBytes(server.element);
  text += std::string(": ") + serverWords(server.outcome);
  if (!server.detail.empty())
    text += " (" + toBytes(server.detail) + ")";
  if (!server.place.empty())
    text += ", " + toBytes(server.place);
  if (server.bytes > 0)
    text += ", " + std::to_string(server.bytes) + " bytes";
  return text;
}

std::string placeLines(const StoryPlace& place) {
  switch (place.kind) {
    case StoryPlace::Kind::kDirectory:
      return line("  ",
                  toBytes(place.directory.path) +
                      (place.directory.isRecursive ? " and below: " : ": ") +
                      directoryWords(place.directory)) +
             candidateLines(place.candidates, "    ");
    case StoryPlace::Kind::kServer:
      return line("  ", serverLine(place.server)) + candidateLines(place.candidates, "    ");
    case StoryPlace::Kind::kPaths:
      break;
  }
  return candidateLines(place.candidates, "  ");
}

std::string stepLines(const StoryStep& step, bool isFound) {
  const std::string head = "step " + std::to_string(step.step) + ", " + stepWords(step.step) + ": ";
  if (!step.hasRun)
    return line("", head + "not tried, " + notRunWords(step.whyNot, isFound));
  if (step.idle != QV_2_9::jiNotIdle)
    return line("", head + idleWords(step.idle));
  std::string text = line("", head + milliseconds(step.microseconds));
  for (const StoryPlace& place : step.places) text += placeLines(place);
  return text;
}

}  // namespace

std::string storyText(const FindOptions& options,
                      const Outcome& outcome,
                      const Story& story,
                      const std::vector<std::string>& advice) {
  std::string text =
      line("",
           std::string(categoryWords(options.category)) + " '" + toBytes(options.name) +
               "', in directories '" + toBytes(story.nameInDirectories()) + "'");
  if (!story.suggestions().empty())
    text += line("", "suggested paths:") + candidateLines(story.suggestions(), "  ");
  for (const StoryStep& step : story.steps()) text += stepLines(step, outcome.found.has_value());
  const std::string time = " after " + milliseconds(story.microseconds());
  if (outcome.found)
    return text + line("",
                       "found" + time + ": " + toBytes(outcome.found->path) + " (" +
                           stepWords(outcome.found->step) + ", " +
                           confidenceWords(outcome.found->confidence) + ")");
  text += line("", "not found" + time);
  for (const std::string& one : advice) text += line("  - ", one);
  return text;
}

}  // namespace quiver_tool
