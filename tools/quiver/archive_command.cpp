#include "archive_command.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "archive_listing.h"
#include "result_scope.h"
#include "text_encoding.h"
#include "text_table.h"
#include "words.h"

namespace quiver_tool {
namespace {

using Entries = std::vector<ArchiveEntry>;
using Json = nlohmann::ordered_json;

constexpr int kIndent = 2;

const char* stateWords(CopyState state) {
  switch (state) {
    case CopyState::Agrees:
      return "agrees";
    case CopyState::Differs:
      return "differs";
    case CopyState::Unreadable:
      return "unreadable";
    case CopyState::Foreign:
      break;
  }
  return "foreign";
}

bool isCopy(const ArchiveEntry& entry) {
  return entry.state == CopyState::Agrees || entry.state == CopyState::Differs;
}

std::string orDash(const std::string& text) {
  return text.empty() ? "-" : text;
}

// What is no copy is named by its place below the result directory.
std::vector<std::string> row(const ArchiveEntry& entry) {
  return {escapeControls(toBytes(isCopy(entry) ? entry.name : entry.path)),
          entry.category ? categoryWord(*entry.category) : "-",
          orDash(toBytes(entry.md5)),
          entry.size ? std::to_string(*entry.size) : "-",
          stateWords(entry.state)};
}

std::string table(const Entries& entries) {
  std::vector<std::vector<std::string>> rows{{"name", "category", "md5", "size", "content"}};
  for (const ArchiveEntry& entry : entries) rows.push_back(row(entry));
  return alignedTable(rows);
}

Json textOrNull(const std::wstring& text) {
  return text.empty() ? Json() : Json(toUtf8(text));
}

Json toJsonObject(const ArchiveEntry& entry) {
  return {{"path", toUtf8(entry.path)},
          {"name", textOrNull(entry.name)},
          {"category", entry.category ? Json(categoryWord(*entry.category)) : Json()},
          {"folder_md5", textOrNull(entry.folderMd5)},
          {"md5", textOrNull(entry.md5)},
          {"size", entry.size ? Json(*entry.size) : Json()},
          {"content", stateWords(entry.state)}};
}

std::string document(const Entries& entries) {
  Json array = Json::array();
  for (const ArchiveEntry& entry : entries) array.push_back(toJsonObject(entry));
  return array.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

Answer show(const ArchiveOptions& options) {
  const Entries entries = listArchive(options.directory);
  const auto wrong = std::count_if(entries.begin(), entries.end(), [](const ArchiveEntry& entry) {
    return entry.state != CopyState::Agrees;
  });
  Answer answer;
  answer.out = options.isJson ? document(entries) : table(entries);
  if (!options.isVerifying || wrong == 0)
    return answer;
  answer.status = kExitNotFound;
  answer.err = "quiver: " + std::to_string(wrong) + " of " + std::to_string(entries.size()) +
               (wrong == 1 ? " does not agree\n" : " do not agree\n");
  return answer;
}

Answer file(const ArchiveOptions& options) {
  ResultScope scope({options.directory});
  Answer answer;
  for (const std::wstring& path : options.files) {
    const QV_2_9::archive_result_t code = scope.archive(path, options.category);
    answer.out += escapeControls(toBytes(path)) + ": " + archiveWords(code) + "\n";
    if (code != QV_2_9::arArchived && code != QV_2_9::arAlreadyArchived)
      answer.status = kExitNotFound;
  }
  return answer;
}

}  // namespace

Answer runArchive(const ArchiveOptions& options) {
  return options.isListing ? show(options) : file(options);
}

}  // namespace quiver_tool
