// The JSON form of a story. What is no character in file names is replaced by U+FFFD.

#include "explain_report.h"
#include "explain_words.h"
#include "report_json.h"
#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

Json candidatesArray(const std::vector<StoryCandidate>& candidates) {
  static constexpr const char* kOutcomes[] = {"missing", "duplicate", "invalid", "valid"};
  Json array = Json::array();
  for (const StoryCandidate& candidate : candidates) {
    Json object{{"path", toUtf8(candidate.path)},
                {"outcome", kOutcomes[candidate.outcome]},
                {"text", candidateWords(candidate)}};
    if (candidate.code != -1) {
      object["code"] = candidate.code;
      object["message"] = toUtf8(candidate.message);
    }
    if (candidate.confidence != -1)
      object["confidence"] = candidate.confidence;
    array.push_back(std::move(object));
  }
  return array;
}

Json placeObject(const StoryPlace& place) {
  static constexpr const char* kStates[] = {
      "searched", "ended", "missing", "unreadable", "repeated", "not_searched", "symbol_server"};
  static constexpr const char* kAnswers[] = {
      "found", "missing", "mismatch", "failed", "left_alone", "canceled"};
  Json object = Json::object();
  if (place.kind == StoryPlace::Kind::kDirectory) {
    object["directory"] = toUtf8(place.directory.path);
    object["recursive"] = place.directory.isRecursive;
    object["state"] = kStates[place.directory.state];
    object["from_index"] = place.directory.isFromIndex;
    object["entries"] = place.directory.entries;
  } else if (place.kind == StoryPlace::Kind::kServer) {
    object["server"] = toUtf8(place.server.element);
    object["place"] = toUtf8(place.server.place);
    object["identity"] = toUtf8(place.server.identity);
    object["state"] = kAnswers[place.server.outcome];
    object["detail"] = toUtf8(place.server.detail);
    object["bytes"] = place.server.bytes;
  }
  object["candidates"] = candidatesArray(place.candidates);
  return object;
}

Json stepObject(const StoryStep& step, bool isFound) {
  Json object{{"step", step.step}, {"step_text", stepWords(step.step)}, {"run", step.hasRun}};
  if (!step.hasRun) {
    object["reason"] = notRunWords(step.whyNot, isFound);
    return object;
  }
  object["microseconds"] = step.microseconds;
  if (step.idle != QV_2_9::jiNotIdle)
    object["reason"] = idleWords(step.idle);
  object["places"] = Json::array();
  for (const StoryPlace& place : step.places) object["places"].push_back(placeObject(place));
  return object;
}

Json foundObject(const std::optional<FoundFile>& file) {
  if (!file)
    return Json();
  return {{"path", toUtf8(file->path)},
          {"step", file->step},
          {"step_text", stepWords(file->step)},
          {"confidence", file->confidence}};
}

}  // namespace

std::string storyJson(const FindOptions& options,
                      const Outcome& outcome,
                      const Story& story,
                      const std::vector<std::string>& advice) {
  Json document{{"kind", categoryWord(options.category)},
                {"name", toUtf8(options.name)},
                {"name_in_directories", toUtf8(story.nameInDirectories())},
                {"found", foundObject(outcome.found)},
                {"microseconds", story.microseconds()},
                {"suggestions", candidatesArray(story.suggestions())}};
  document["steps"] = Json::array();
  for (const StoryStep& step : story.steps())
    document["steps"].push_back(stepObject(step, outcome.found.has_value()));
  document["archived"] = archivedObject(outcome.archived);
  document["advice"] = Json::array();
  for (const std::string& one : advice) document["advice"].push_back(toUtf8(toWide(one)));
  return document.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace quiver_tool
