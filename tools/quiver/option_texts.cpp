#include "option_texts.h"

#include "operands.h"
#include "text_encoding.h"
#include "usage_error.h"

namespace quiver_tool {

CLI::Option* addText(CLI::App& app, const char* names, const char* type, const char* description) {
  return app.add_option(names)
      ->type_name(type)
      ->description(description)
      ->type_size(1)
      ->expected(1);
}

CLI::Option* addTexts(CLI::App& app, const char* names, const char* type, const char* description) {
  return addText(app, names, type, description)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

CLI::Option* addFlag(CLI::App& app, const char* names, const char* description) {
  return app.add_flag(names)->description(description);
}

bool isGiven(const CLI::Option* option) {
  return option && option->count() > 0;
}

std::optional<std::wstring> textOf(const CLI::Option* option) {
  if (!isGiven(option))
    return std::nullopt;
  const std::wstring text = toWide(withoutMarks(option->results().back()));
  if (text.empty())
    throw UsageError(option->get_name() + " must not be empty");
  return text;
}

std::vector<std::wstring> textsOf(const CLI::Option& option) {
  std::vector<std::wstring> texts;
  for (const std::string& marked : option.results()) {
    const std::string bytes = withoutMarks(marked);
    if (bytes.empty())
      throw UsageError(option.get_name() + " must not be empty");
    texts.push_back(toWide(bytes));
  }
  return texts;
}

}  // namespace quiver_tool
