// The JSON form of an outcome. What is no character in file names is replaced by U+FFFD.

#include "report_json.h"

#include "report.h"
#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

Json text(const std::wstring& value) {
  return toUtf8(value);
}

Json toJsonObject(const FoundFile& file) {
  return {{"path", text(file.path)},
          {"step", file.step},
          {"step_text", stepWords(file.step)},
          {"confidence", file.confidence},
          {"confidence_text", confidenceWords(file.confidence)}};
}

Json toJsonObject(const RejectedFile& file) {
  return {{"path", text(file.path)},
          {"step", file.step},
          {"step_text", stepWords(file.step)},
          {"code", file.code},
          {"code_text", codeWords(file.code)},
          {"message", text(file.message)},
          {"reason", reasonWords(file.message)}};
}

template <class File>
Json toJsonArray(const std::vector<File>& files) {
  Json array = Json::array();
  for (const File& file : files) array.push_back(toJsonObject(file));
  return array;
}

}  // namespace

Json pathsArray(const std::vector<std::wstring>& paths) {
  Json array = Json::array();
  for (const std::wstring& path : paths) array.push_back(text(path));
  return array;
}

Json archivedObject(const std::optional<QV_2_9::archive_result_t>& code) {
  if (!code)
    return Json();
  return {{"code", static_cast<std::int32_t>(*code)}, {"code_text", archiveWords(*code)}};
}

std::string toJson(const FindOptions& options, const Outcome& outcome) {
  Json document;
  document["kind"] = categoryWord(options.category);
  document["name"] = text(options.name);
  document["found"] = outcome.found ? toJsonObject(*outcome.found) : Json();
  document["candidates"] = toJsonArray(outcome.candidates);
  document["rejected"] = toJsonArray(outcome.rejected);
  document["missing_directories"] = pathsArray(outcome.unusable.missing);
  document["unreadable_directories"] = pathsArray(outcome.unusable.unreadable);
  document["archived"] = archivedObject(outcome.archived);
  document["message"] = outcome.found ? Json() : text(toWide(notFoundSentence(options, outcome)));
  return document.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace quiver_tool
