#include "resolve_report.h"

#include <cstddef>

#include "report_data.h"

namespace quiver_tool {
namespace {

constexpr std::string_view kDataMark = "@DATA@";

}  // namespace

// Markup characters occur within the strings of a JSON text only.
std::string jsonForMarkup(std::string_view json) {
  std::string text;
  text.reserve(json.size());
  for (const char c : json) {
    if (c == '<')
      text += "\\u003c";
    else if (c == '>')
      text += "\\u003e";
    else if (c == '&')
      text += "\\u0026";
    else
      text += c;
  }
  return text;
}

std::string reportPage(const Resolution& resolution) {
  using Json = nlohmann::ordered_json;
  const Json document = reportData(resolution);
  const std::string data =
      jsonForMarkup(document.dump(-1, ' ', false, Json::error_handler_t::replace));
  const std::string_view page = kReportPage;
  const std::size_t mark = page.find(kDataMark);
  std::string text;
  text.reserve(page.size() + data.size());
  text.append(page.substr(0, mark)).append(data).append(page.substr(mark + kDataMark.size()));
  return text;
}

}  // namespace quiver_tool
