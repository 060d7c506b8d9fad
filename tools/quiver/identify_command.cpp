#include "identify_command.h"

#include <nlohmann/json.hpp>

#include "file_identity.h"
#include "help_texts.h"
#include "option_texts.h"
#include "text_encoding.h"
#include "text_table.h"

namespace quiver_tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kCommand = "identify";
constexpr int kIndent = 2;

struct IdentifyOptions {
  std::vector<std::wstring> files;
  bool isJson = false;
};

std::string orDash(const std::string& text) {
  return text.empty() ? "-" : escapeControls(text);
}

std::string table(const std::vector<IdentifiedFile>& files) {
  std::vector<std::vector<std::string>> rows{
      {"file", "format", "identity", "symbol file", "md5", "size"}};
  for (const IdentifiedFile& file : files) {
    if (const std::optional<FileIdentity>& identity = file.identity)
      rows.push_back({escapeControls(toBytes(file.path)),
                      identity->format,
                      identityText(*identity),
                      orDash(identity->symbolFile.value_or("")),
                      orDash(toBytes(identity->md5)),
                      std::to_string(identity->size)});
  }
  return rows.size() == 1 ? "" : alignedTable(rows);
}

template <class T>
Json orNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json();
}

Json toJsonObject(const IdentifiedFile& file) {
  Json object{{"path", toUtf8(file.path)}};
  if (!file.identity) {
    object["error"] = file.reason;
    return object;
  }
  const FileIdentity& identity = *file.identity;
  object["format"] = identity.format;
  object["guid"] = orNull(identity.guid);
  object["signature"] = orNull(identity.signature);
  object["age"] = orNull(identity.age);
  object["build_id"] = orNull(identity.buildId);
  object["symbol_file"] = orNull(identity.symbolFile);
  object["store_key"] = orNull(identity.storeKey);
  object["time_stamp"] = orNull(identity.timeStamp);
  object["size_of_image"] = orNull(identity.sizeOfImage);
  object["md5"] = identity.md5.empty() ? Json() : Json(toUtf8(identity.md5));
  object["size"] = identity.size;
  return object;
}

std::string document(const std::vector<IdentifiedFile>& files) {
  Json array = Json::array();
  for (const IdentifiedFile& file : files) array.push_back(toJsonObject(file));
  return array.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

Answer runIdentify(const IdentifyOptions& options) {
  Answer answer;
  std::vector<IdentifiedFile> files;
  for (const std::wstring& path : options.files) {
    files.push_back(identify(path));
    if (files.back().identity)
      continue;
    answer.status = kExitNotFound;
    answer.err += "quiver: " + escapeControls(toBytes(path)) + ": " + files.back().reason + "\n";
  }
  answer.out = options.isJson ? document(files) : table(files);
  return answer;
}

}  // namespace

ProgramCommand addIdentifyCommand(CLI::App& app) {
  CLI::App& identify = *app.add_subcommand(kCommand, kIdentifyDescription);
  identify.footer(kIdentifyExamples);
  CLI::Option* files = addTexts(identify, "FILE", "", "Binary or symbol file; may be repeated");
  files->required()->allow_extra_args();
  CLI::Option* json = addFlag(identify, "--json", "Print the result as JSON");
  return {&identify, kCommand, [files, json] {
            return [options = IdentifyOptions{textsOf(*files), isGiven(json)}] {
              return runIdentify(options);
            };
          }};
}

}  // namespace quiver_tool
