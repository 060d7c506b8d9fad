// The grammar of the command line. Texts are taken raw from the option parser and read by our own
// code: its own list syntax would change directories called "{}" or "[a,b]".

#include "command_line.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <sstream>
#include <system_error>

#include "help_texts.h"
#include "md5_text.h"
#include "text_encoding.h"
#include "usage_error.h"

namespace quiver_tool {
namespace {

using QV_2_9::search_category_t;

struct Kind {
  const char* word;
  search_category_t category;
};

constexpr Kind kKinds[] = {
    {"bin", QV_2_9::scBinaryFiles},
    {"sym", QV_2_9::scSymbolFiles},
    {"src", QV_2_9::scSourceFiles},
};

constexpr std::int32_t kOsWindows = 1;
constexpr std::int32_t kOsOther = 2;

/// The options of one kind; `--binary` is null for a binary.
struct KindCommand {
  search_category_t category = QV_2_9::scBinaryFiles;
  CLI::App* app = nullptr;
  CLI::Option* name = nullptr;
  CLI::Option* directories = nullptr;
  CLI::Option* archives = nullptr;
  CLI::Option* binary = nullptr;
  CLI::Option* md5 = nullptr;
  CLI::Option* suggestion = nullptr;
  CLI::Option* os = nullptr;
  CLI::Option* all = nullptr;
  CLI::Option* json = nullptr;
  CLI::Option* verbose = nullptr;
};

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

KindCommand addKind(CLI::App& find, const Kind& kind) {
  KindCommand command;
  CLI::App& app = *find.add_subcommand(kind.word, kindDescription(kind.category));
  app.footer(kindExamples(kind.category));
  command.app = &app;
  command.category = kind.category;
  command.name = addText(app, "NAME", "", "Recorded path or bare file name")->required();
  command.directories = addTexts(
      app,
      "-d,--dir",
      "[bin:|sym:|src:|all:]PATH[,recursive][,high]",
      "Directory to search, or with 'recursive' its whole tree; with 'high' before the recorded "
      "name itself; may be repeated, the order counts");
  command.archives = addTexts(
      app,
      "--archive",
      "DIR",
      "Archive directory: the tree DIR/<file name> holds copies of the file; may be repeated");
  if (kind.category != QV_2_9::scBinaryFiles)
    command.binary = addText(app, "--binary", "FILE", "The binary that the file belongs to");
  command.md5 = addText(app, "--md5", "HEX", "Take only a file with this MD5 (32 digits)");
  command.suggestion = addText(app, "--suggest", "PATH", "Path to try before any step");
  command.os = addText(app, "--os", "windows|other", "System that the name was recorded on");
  command.all = addFlag(app, "--all", "Run every step and list all valid candidates");
  command.json = addFlag(app, "--json", "Print the result as JSON");
  command.verbose =
      addFlag(app, "-v,--verbose", "Show how the file was found and what was rejected");
  return command;
}

bool isExistingDirectory(const std::wstring& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(toNativePath(path), ignored);
}

std::optional<std::wstring> textOf(const CLI::Option* option) {
  if (!option || option->results().empty())
    return std::nullopt;
  const std::wstring text = toWide(option->results().back());
  if (text.empty())
    throw UsageError(option->get_name() + " must not be empty");
  return text;
}

std::vector<std::wstring> textsOf(const CLI::Option& option) {
  std::vector<std::wstring> texts;
  for (const std::string& bytes : option.results()) {
    if (bytes.empty())
      throw UsageError(option.get_name() + " must not be empty");
    texts.push_back(toWide(bytes));
  }
  return texts;
}

std::vector<SearchDirectory> directoriesOf(const KindCommand& command) {
  std::vector<SearchDirectory> directories;
  for (const std::string& bytes : command.directories->results())
    directories.push_back(
        parseSearchDirectory(toWide(bytes), command.category, isExistingDirectory));
  return directories;
}

std::optional<std::wstring> md5Of(const CLI::Option& option) {
  if (option.results().empty())
    return std::nullopt;
  std::wstring text = toWide(option.results().back());
  checkMd5Text(text);
  return text;
}

std::optional<std::int32_t> osTypeOf(const CLI::Option& option) {
  if (option.results().empty())
    return std::nullopt;
  const std::string& word = option.results().back();
  if (word == "windows")
    return kOsWindows;
  if (word == "other")
    return kOsOther;
  throw UsageError("--os: '" + word + "' is neither 'windows' nor 'other'");
}

FindOptions readOptions(const KindCommand& command) {
  FindOptions options;
  options.category = command.category;
  options.name = textOf(command.name).value_or(std::wstring());
  options.directories = directoriesOf(command);
  options.archives = textsOf(*command.archives);
  options.binary = textOf(command.binary);
  options.md5 = md5Of(*command.md5);
  options.suggestion = textOf(command.suggestion);
  options.osType = osTypeOf(*command.os);
  options.isAll = command.all->count() > 0;
  options.isJson = command.json->count() > 0;
  options.isVerbose = command.verbose->count() > 0;
  return options;
}

Answer usageAnswer(const std::string& complaint, const std::string& help) {
  return {kExitFailure, "", "quiver: " + escapeControls(complaint) + "\n" + help};
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
    for (const Kind& kind : kKinds) m_kinds.push_back(addKind(*m_find, kind));
  }

  CommandLine parse(int argc, const char* const* argv) {
    CommandLine line;
    try {
      m_app.parse(argc, argv);
      line.find = readOptions(usedKind());
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
  const KindCommand& usedKind() const {
    for (const KindCommand& kind : m_kinds) {
      if (kind.app->parsed())
        return kind;
    }
    throw UsageError("nothing to find");
  }

  // The innermost command that was named.
  const CLI::App& usedCommand() const {
    for (const KindCommand& kind : m_kinds) {
      if (kind.app->parsed())
        return *kind.app;
    }
    return m_find->parsed() ? *m_find : m_app;
  }

  std::string hint() const {
    const CLI::App& used = usedCommand();
    const std::string kind = &used == &m_app || &used == m_find ? "" : used.get_name() + " ";
    return "Try 'quiver " + std::string(m_find->parsed() ? "find " : "") + kind + "--help'.\n";
  }

  Answer answerTo(const CLI::ParseError& error) const {
    const CLI::App& used = usedCommand();
    if (&used != &m_app && &used != m_find)
      return usageAnswer(error.what(), hint());
    const std::vector<std::string> rest = m_app.remaining(true);
    if (rest.empty())
      return {kExitFailure, "", m_app.help()};
    const char* choice = &used == &m_app
                             ? "' is not a command; the command is 'find'"
                             : "' is no kind of file; the kinds are 'bin', 'sym', 'src'";
    return usageAnswer("'" + rest.front() + choice, hint());
  }

  CLI::App m_app;
  CLI::App* m_find = nullptr;
  std::vector<KindCommand> m_kinds;
};

}  // namespace

CommandLine parseCommandLine(int argc, const char* const* argv) {
  return Grammar().parse(argc, argv);
}

}  // namespace quiver_tool
