#include "report_data.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "resolution_json.h"
#include "text_encoding.h"
#include "words.h"

namespace quiver_tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::int32_t kMostSteps = 7;

// The page puts the texts back; it has the same list.
constexpr std::string_view kSharedMembers[] = {
    "module", "step_text", "confidence_text", "reason_text", "message", "archived_text"};

bool isShared(const std::string& member) {
  return std::ranges::find(kSharedMembers, member) != std::end(kSharedMembers);
}

/// The texts of the journals, and behind them those of the files.
class SharedTexts final {
 public:
  explicit SharedTexts(const TextPool& pool) {
    for (const std::wstring& text : pool.texts()) m_texts.push_back(toUtf8(text));
  }

  std::size_t numberOf(const std::string& text) {
    const auto [known, isNew] = m_numbers.emplace(text, m_texts.size());
    if (isNew)
      m_texts.push_back(text);
    return known->second;
  }

  const Json& texts() const { return m_texts; }

 private:
  Json m_texts = Json::array();
  std::unordered_map<std::string, std::size_t> m_numbers;
};

Json journalOf(const ResolvedFile& file) {
  Json numbers = Json::array();
  for (const auto& event : file.journal.events())
    for (const std::int64_t number : event) numbers.push_back(number);
  return numbers;
}

Json smallFile(const Json& file, SharedTexts& texts) {
  Json small = Json::object();
  for (const auto& [member, value] : file.items()) {
    if (value.is_string() && isShared(member))
      small[member] = texts.numberOf(value.get<std::string>());
    else if (!value.is_null())
      small[member] = value;
  }
  return small;
}

Json stepTexts() {
  Json texts = Json::array({""});
  for (std::int32_t step = 1; step <= kMostSteps; ++step) texts.push_back(stepWords(step));
  return texts;
}

}  // namespace

Json reportData(const Resolution& resolution) {
  Json document = resolutionDocument(resolution, false);
  SharedTexts texts(resolution.texts);
  for (std::size_t i = 0; i < resolution.files.size(); ++i) {
    Json& file = document["files"][i];
    file = smallFile(file, texts);
    file["journal"] = journalOf(resolution.files[i]);
  }
  document["steps"] = stepTexts();
  document["texts"] = texts.texts();
  return document;
}

}  // namespace quiver_tool
