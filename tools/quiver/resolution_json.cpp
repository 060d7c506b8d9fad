#include "resolution_json.h"

#include "report_json.h"
#include "resolution_summary.h"
#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;

Json text(const std::wstring& value) {
  return toUtf8(value);
}

Json textOrNull(const std::wstring& value) {
  return value.empty() ? Json() : text(value);
}

template <class T>
Json orNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json();
}

Json toJsonObject(const KindSummary& kind) {
  Json foundBy = Json::array();
  for (const auto& [step, files] : kind.foundBy) {
    foundBy.push_back({{"step", step},
                       {"step_text", stepWords(step)},
                       {"confirmed", files.confirmed},
                       {"not_contradicted", files.notContradicted}});
  }
  Json missed = Json::array();
  for (const auto& [reason, files] : kind.missed) {
    missed.push_back(
        {{"reason", missWord(reason)}, {"reason_text", missWords(reason)}, {"files", files}});
  }
  return {{"kind", categoryWord(kind.category)},
          {"files", kind.files},
          {"found", kind.found},
          {"not_found", kind.notFound},
          {"not_tried", kind.notTried},
          {"found_by", foundBy},
          {"not_found_by", missed}};
}

Json toJsonObject(const UsedMapping& mapping) {
  return {{"from", text(mapping.from)},
          {"to", text(mapping.to)},
          {"learned", mapping.isLearned},
          {"confirmations", mapping.confirmations}};
}

Json toJsonObject(const RejectedFile& file) {
  return {{"path", text(file.path)},
          {"step", file.step},
          {"code", file.code},
          {"message", text(file.message)},
          {"reason", reasonWords(file.message)}};
}

void addAnswer(const ResolvedFile& file, Json& object) {
  const bool isFound = file.state == FileState::Found;
  const bool isMissed = file.state == FileState::NotFound;
  object["path"] = isFound ? text(file.found->path) : Json();
  object["step"] = isFound ? Json(file.found->step) : Json();
  object["step_text"] = isFound ? Json(stepWords(file.found->step)) : Json();
  object["confidence"] = isFound ? Json(file.found->confidence) : Json();
  object["confidence_text"] = isFound ? Json(confidenceWords(file.found->confidence)) : Json();
  object["reason"] = isMissed ? Json(missWord(missReason(file))) : Json();
  object["reason_text"] = isMissed ? Json(missWords(missReason(file))) : Json();
  object["message"] = isMissed ? text(toWide(missSentence(file))) : Json();
}

void addRejected(const ResolvedFile& file, Json& object) {
  object["rejected"] = Json::array();
  for (const RejectedFile& rejected : file.rejected)
    object["rejected"].push_back(toJsonObject(rejected));
}

Json toJsonObject(const ResolvedFile& file, bool hasRejected) {
  const RecordedFile& recorded = file.recorded;
  Json object{{"kind", categoryWord(recorded.category)},
              {"name", text(recorded.name)},
              {"module", textOrNull(recorded.module)},
              {"md5", recorded.md5 ? text(*recorded.md5) : Json()},
              {"size", orNull(recorded.size)},
              {"time", orNull(recorded.modificationTime)},
              {"state", stateWord(file.state)}};
  addAnswer(file, object);
  object["archived"] = file.archived ? Json(static_cast<std::int32_t>(*file.archived)) : Json();
  object["archived_text"] = file.archived ? Json(archiveWords(*file.archived)) : Json();
  object["microseconds"] = file.microseconds;
  if (hasRejected)
    addRejected(file, object);
  return object;
}

}  // namespace

Json resolutionDocument(const Resolution& resolution, bool hasRejected) {
  Json document{{"format", "quiver-resolution"},
                {"version", kVersion},
                {"manifest", text(resolution.manifest)},
                {"interrupted", resolution.isInterrupted},
                {"microseconds", resolution.microseconds}};
  document["summary"] = Json::array();
  for (const KindSummary& kind : summarize(resolution))
    document["summary"].push_back(toJsonObject(kind));
  document["mappings"] = Json::array();
  for (const UsedMapping& mapping : resolution.mappings)
    document["mappings"].push_back(toJsonObject(mapping));
  document["missing_directories"] = pathsArray(resolution.unusable.missing);
  document["unreadable_directories"] = pathsArray(resolution.unusable.unreadable);
  document["files"] = Json::array();
  for (const ResolvedFile& file : resolution.files)
    document["files"].push_back(toJsonObject(file, hasRejected));
  return document;
}

}  // namespace quiver_tool
