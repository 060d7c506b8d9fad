#include "find_grammar.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "find_command.h"
#include "help_texts.h"
#include "md5_text.h"
#include "option_texts.h"
#include "recorded_numbers.h"
#include "text_encoding.h"
#include "usage_error.h"
#include "words.h"

namespace quiver_tool {
namespace {

using QV_2_9::search_category_t;

constexpr std::int32_t kOsWindows = 1;
constexpr std::int32_t kOsOther = 2;

/// The options of one kind; those that a kind does not have are null.
struct FindCommand {
  QV_2_9::search_category_t category = QV_2_9::scBinaryFiles;
  CLI::Option* name = nullptr;
  CLI::Option* directories = nullptr;
  CLI::Option* archives = nullptr;
  CLI::Option* result = nullptr;
  CLI::Option* parents = nullptr;
  CLI::Option* archiveFound = nullptr;
  CLI::Option* binary = nullptr;
  CLI::Option* md5 = nullptr;
  CLI::Option* modificationTime = nullptr;
  CLI::Option* size = nullptr;
  CLI::Option* notNewerThan = nullptr;
  CLI::Option* symbolPath = nullptr;
  CLI::Option* noServers = nullptr;
  CLI::Option* timeout = nullptr;
  CLI::Option* suggestion = nullptr;
  CLI::Option* os = nullptr;
  CLI::Option* all = nullptr;
  CLI::Option* json = nullptr;
  CLI::Option* verbose = nullptr;
};

void addPlaces(CLI::App& app, FindCommand& command) {
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
  command.result =
      addText(app, "--result", "DIR", "Result directory: search its archive and its folders too");
  command.parents = addTexts(app,
                             "--parent",
                             "DIR",
                             "Further result directory behind that of --result; may be repeated, "
                             "the nearest first");
  command.archiveFound = addFlag(
      app, "--archive-found", "Copy the file that was found into the archive of the result");
}

void addChecks(CLI::App& app, FindCommand& command) {
  command.md5 = addText(app, "--md5", "HEX", "Take only a file with this MD5 (32 digits)");
  if (command.category != QV_2_9::scSourceFiles)
    return;
  command.modificationTime = addText(app,
                                     "--mtime",
                                     "SECONDS|FILE",
                                     "Take only a file with this modification time: seconds since "
                                     "1970, or those of FILE");
  command.size = addText(app, "--size", "BYTES", "Take only a file of this size");
  command.notNewerThan =
      addText(app, "--not-newer-than", "FILE", "Reject files that are newer than FILE");
}

void addSymbolOptions(CLI::App& app, FindCommand& command) {
  if (command.category != QV_2_9::scSymbolFiles)
    return;
  command.symbolPath = addText(app,
                               "--symbol-path",
                               "TEXT",
                               "Symbol path: directories and servers (srv*cache*address) between "
                               "semicolons, instead of _NT_SYMBOL_PATH");
  command.noServers = addFlag(app, "--no-servers", "Ask no symbol server");
  command.timeout =
      addText(app, "--timeout", "SECONDS", "Give a request to a symbol server up after this time");
}

bool isExistingDirectory(const std::wstring& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(toNativePath(path), ignored);
}

std::vector<SearchDirectory> directoriesOf(const FindCommand& command) {
  std::vector<SearchDirectory> directories;
  for (const std::string& bytes : command.directories->results())
    directories.push_back(
        parseSearchDirectory(toWide(bytes), command.category, isExistingDirectory));
  return directories;
}

std::optional<std::wstring> md5Of(const CLI::Option& option) {
  if (!isGiven(&option))
    return std::nullopt;
  std::wstring text = toWide(option.results().back());
  checkMd5Text(text);
  return text;
}

std::optional<std::int32_t> osTypeOf(const CLI::Option& option) {
  if (!isGiven(&option))
    return std::nullopt;
  const std::string& word = option.results().back();
  if (word == "windows")
    return kOsWindows;
  if (word == "other")
    return kOsOther;
  throw UsageError("--os: '" + word + "' is neither 'windows' nor 'other'");
}

void rejectSecondCheck(const FindCommand& command) {
  const bool isTimed = isGiven(command.modificationTime) || isGiven(command.size);
  if (isGiven(command.md5) + isTimed + isGiven(command.notNewerThan) > 1)
    throw UsageError("--md5, --mtime with --size, and --not-newer-than exclude each other");
}

std::optional<std::wstring> referenceOf(const CLI::Option* option) {
  std::optional<std::wstring> path = textOf(option);
  std::error_code error;
  if (path && !std::filesystem::exists(toNativePath(*path), error))
    throw UsageError("--not-newer-than: no such file: " + toBytes(*path));
  return path;
}

void readChecks(const FindCommand& command, FindOptions& options) {
  rejectSecondCheck(command);
  options.md5 = md5Of(*command.md5);
  if (const std::optional<std::wstring> text = textOf(command.modificationTime))
    options.modificationTime = parseModificationTime(*text);
  if (const std::optional<std::wstring> text = textOf(command.size))
    options.size = parseSize(*text);
  options.notNewerThan = referenceOf(command.notNewerThan);
}

std::optional<std::int32_t> secondsOf(const CLI::Option* option) {
  const std::optional<std::wstring> text = textOf(option);
  if (!text)
    return std::nullopt;
  const bool isNumber = text->size() <= 5 && std::ranges::all_of(*text, [](wchar_t c) {
                          return c >= L'0' && c <= L'9';
                        });
  const std::int32_t seconds = isNumber ? static_cast<std::int32_t>(std::stol(*text)) : 0;
  if (seconds == 0)
    throw UsageError("--timeout: '" + toBytes(*text) + "' is no number of seconds from 1 to 99999");
  return seconds;
}

void readSymbolOptions(const FindCommand& command, FindOptions& options) {
  options.symbolPath = textOf(command.symbolPath);
  options.isWithoutServers = isGiven(command.noServers);
  options.serverSeconds = secondsOf(command.timeout);
}

void readPlaces(const FindCommand& command, FindOptions& options) {
  options.directories = directoriesOf(command);
  options.archives = textsOf(*command.archives);
  if (const std::optional<std::wstring> result = textOf(command.result))
    options.results.push_back(*result);
  for (const std::wstring& parent : textsOf(*command.parents)) options.results.push_back(parent);
  options.isArchivingFound = isGiven(command.archiveFound);
  if (options.isArchivingFound && options.results.empty())
    throw UsageError("--archive-found needs a result directory: --result or --parent");
}

FindOptions readFindOptions(const FindCommand& command) {
  FindOptions options;
  options.category = command.category;
  options.name = textOf(command.name).value_or(std::wstring());
  readPlaces(command, options);
  options.binary = textOf(command.binary);
  readChecks(command, options);
  readSymbolOptions(command, options);
  options.suggestion = textOf(command.suggestion);
  options.osType = osTypeOf(*command.os);
  options.isAll = isGiven(command.all);
  options.isJson = isGiven(command.json);
  options.isVerbose = isGiven(command.verbose);
  return options;
}

}  // namespace

ProgramCommand addFindCommand(CLI::App& find, search_category_t category) {
  FindCommand command;
  CLI::App& app = *find.add_subcommand(categoryWord(category), kindDescription(category));
  app.footer(kindExamples(category));
  command.category = category;
  command.name = addText(app, "NAME", "", "Recorded path or bare file name")->required();
  addPlaces(app, command);
  if (category != QV_2_9::scBinaryFiles)
    command.binary = addText(app, "--binary", "FILE", "The binary that the file belongs to");
  addChecks(app, command);
  addSymbolOptions(app, command);
  command.suggestion = addText(app, "--suggest", "PATH", "Path to try before any step");
  command.os = addText(app, "--os", "windows|other", "System that the name was recorded on");
  command.all = addFlag(app, "--all", "Run every step and list all valid candidates");
  command.json = addFlag(app, "--json", "Print the result as JSON");
  command.verbose =
      addFlag(app, "-v,--verbose", "Show how the file was found and what was rejected");
  return {&app, std::string("find ") + categoryWord(category), [command] {
            return [options = readFindOptions(command)] { return runFind(options); };
          }};
}

}  // namespace quiver_tool
