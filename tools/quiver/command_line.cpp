// The commands of the program, and what each of them answers when it is used wrongly.

#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

#include "archive_grammar.h"
#include "explain_command.h"
#include "find_grammar.h"
#include "help_texts.h"
#include "identify_command.h"
#include "operands.h"
#include "record_command.h"
#include "resolve_command.h"
#include "text_encoding.h"
#include "usage_error.h"

namespace quiver_tool {
namespace {

using QV_2_9::search_category_t;

constexpr search_category_t kKinds[] = {
    QV_2_9::scBinaryFiles, QV_2_9::scSymbolFiles, QV_2_9::scSourceFiles};

Answer usageAnswer(const std::string& complaint, const std::string& help) {
  return {kExitFailure, "", "quiver: " + escapeControls(withoutMarks(complaint)) + "\n" + help};
}

// In the order in which the user wrote them, which the parser turns round. It also leaves the mark
// behind which all arguments are operands.
std::string notExpected(std::vector<std::string> arguments) {
  const auto mark = std::ranges::find(arguments, "--");
  if (mark != arguments.end())
    arguments.erase(mark);
  std::string text = "not expected:";
  for (const std::string& argument : arguments) text += " " + argument;
  return text;
}

// Null when every option that takes one text got one.
const CLI::Option* repeatedOption(const CLI::App& command) {
  const std::vector<const CLI::Option*> options = command.get_options();
  const auto repeated = std::ranges::find_if(options, [](const CLI::Option* option) {
    return option->get_items_expected_max() == 1 && option->count() > 1;
  });
  return repeated == options.end() ? nullptr : *repeated;
}

// As the option parser takes them.
std::vector<std::string> reversedArguments(int argc, const char* const* argv) {
  std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  markOperands(arguments);
  std::reverse(arguments.begin(), arguments.end());
  return arguments;
}

/// The program's commands, and what each of them answers when it is used wrongly.
class Grammar final {
 public:
  Grammar() : m_app(kProgramDescription, "quiver") {
    m_app.allow_windows_style_options(false);
    m_app.footer(kProgramExamples);
    m_app.set_version_flag("--version", "quiver " QUIVER_VERSION);
    m_app.require_subcommand(1);
    m_find = m_app.add_subcommand("find", kFindDescription);
    m_find->footer(kFindExamples);
    m_find->require_subcommand(1);
    for (const search_category_t kind : kKinds) m_commands.push_back(addFindCommand(*m_find, kind));
    addExplainCommands();
    m_commands.push_back(addArchiveCommand(m_app));
    m_commands.push_back(addIdentifyCommand(m_app));
    m_commands.push_back(addRecordCommand(m_app));
    m_commands.push_back(addResolveCommand(m_app));
  }

  Job parse(int argc, const char* const* argv) {
    try {
      m_app.parse(reversedArguments(argc, argv));
      if (const ProgramCommand* command = usedCommand())
        return command->read();
      throw UsageError("nothing to do");
    } catch (const CLI::Success& success) {
      std::ostringstream out;
      std::ostringstream err;
      m_app.exit(success, out, err);
      return saying({kExitFound, out.str(), err.str()});
    } catch (const CLI::ParseError& error) {
      return saying(answerTo(error));
    } catch (const UsageError& error) {
      return saying(usageAnswer(error.what(), hint()));
    }
  }

 private:
  void addExplainCommands() {
    m_explain = m_app.add_subcommand("explain", kExplainDescription);
    m_explain->footer(kExplainExamples);
    m_explain->require_subcommand(1);
    for (const search_category_t kind : kKinds)
      m_commands.push_back(addLookupCommand(*m_explain, kind, kExplainKindDescription, runExplain));
  }

  /// Null when the words so far name neither.
  const CLI::App* groupOfKinds() const {
    return m_find->parsed() ? m_find : m_explain->parsed() ? m_explain : nullptr;
  }

  static Job saying(Answer answer) {
    return [answer = std::move(answer)] { return answer; };
  }

  // Null when the words so far are no whole command.
  const ProgramCommand* usedCommand() const {
    const auto command = std::ranges::find_if(
        m_commands, [](const ProgramCommand& one) { return one.app->parsed(); });
    return command == m_commands.end() ? nullptr : &*command;
  }

  std::string hint() const {
    const ProgramCommand* command = usedCommand();
    const CLI::App* const group = groupOfKinds();
    const std::string words = command ? command->words : group ? group->get_name() : "";
    return "Try 'quiver " + words + (words.empty() ? "" : " ") + "--help'.\n";
  }

  std::string commandWords() const {
    std::string words = "'find', 'explain'";
    for (const ProgramCommand& command : m_commands)
      if (command.app->get_parent() == &m_app)
        words += (&command == &m_commands.back() ? " and '" : ", '") + command.words + "'";
    return words;
  }

  Answer answerTo(const CLI::ParseError& error) const {
    const std::vector<std::string> rest = m_app.remaining(true);
    if (const ProgramCommand* command = usedCommand()) {
      const CLI::Option* repeated = repeatedOption(*command->app);
      const std::string complaint =
          repeated ? repeated->get_name() + " may be given once" : error.what();
      return usageAnswer(rest.empty() ? complaint : notExpected(rest), hint());
    }
    if (rest.empty())
      return {kExitFailure, "", m_app.help()};
    if (groupOfKinds())
      return usageAnswer(
          "'" + rest.front() + "' is no kind of file; the kinds are 'bin', 'sym', 'src'", hint());
    return usageAnswer(
        "'" + rest.front() + "' is not a command; the commands are " + commandWords(), hint());
  }

  CLI::App m_app;
  CLI::App* m_find = nullptr;
  CLI::App* m_explain = nullptr;
  std::vector<ProgramCommand> m_commands;
};

}  // namespace

Job parseCommandLine(int argc, const char* const* argv) {
  return Grammar().parse(argc, argv);
}

}  // namespace quiver_tool
