// The commands of the program, and what each of them answers when it is used wrongly.

#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

#include "archive_grammar.h"
#include "find_grammar.h"
#include "help_texts.h"
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
    for (const search_category_t kind : kKinds) m_kinds.push_back(addFindCommand(*m_find, kind));
    m_archive = addArchiveCommand(m_app);
  }

  CommandLine parse(int argc, const char* const* argv) {
    CommandLine line;
    try {
      m_app.parse(reversedArguments(argc, argv));
      if (m_archive.app->parsed())
        line.archive = readArchiveOptions(m_archive);
      else
        line.find = readFindOptions(usedKind());
    } catch (const CLI::Success& success) {
      std::ostringstream out;
      std::ostringstream err;
      m_app.exit(success, out, err);
      line.answer = Answer{kExitFound, out.str(), err.str()};
    } catch (const CLI::ParseError& error) {
      line.answer = answerTo(error);
    } catch (const UsageError& error) {
      line.answer = usageAnswer(error.what(), hint());
    }
    return line;
  }

 private:
  const FindCommand& usedKind() const {
    for (const FindCommand& kind : m_kinds) {
      if (kind.app->parsed())
        return kind;
    }
    throw UsageError("nothing to find");
  }

  // The innermost command that was named.
  const CLI::App& usedCommand() const {
    for (const FindCommand& kind : m_kinds) {
      if (kind.app->parsed())
        return *kind.app;
    }
    if (m_archive.app->parsed())
      return *m_archive.app;
    return m_find->parsed() ? *m_find : m_app;
  }

  std::string hint() const {
    const CLI::App& used = usedCommand();
    const std::string word = &used == &m_app || &used == m_find ? "" : used.get_name() + " ";
    return "Try 'quiver " + std::string(m_find->parsed() ? "find " : "") + word + "--help'.\n";
  }

  Answer answerTo(const CLI::ParseError& error) const {
    const CLI::App& used = usedCommand();
    if (&used != &m_app && &used != m_find)
      return usageAnswer(error.what(), hint());
    const std::vector<std::string> rest = m_app.remaining(true);
    if (rest.empty())
      return {kExitFailure, "", m_app.help()};
    const char* choice = &used == &m_app
                             ? "' is not a command; the commands are 'find' and 'archive'"
                             : "' is no kind of file; the kinds are 'bin', 'sym', 'src'";
    return usageAnswer("'" + rest.front() + choice, hint());
  }

  CLI::App m_app;
  CLI::App* m_find = nullptr;
  std::vector<FindCommand> m_kinds;
  ArchiveCommand m_archive;
};

}  // namespace

CommandLine parseCommandLine(int argc, const char* const* argv) {
  return Grammar().parse(argc, argv);
}

}  // namespace quiver_tool
