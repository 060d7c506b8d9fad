#include "find_grammar.h"

#include <filesystem>
#include <system_error>

#include "find_command.h"
#include "help_texts.h"
#include "md5_text.h"
#include "option_texts.h"
#include "place_options.h"
#include "recorded_numbers.h"
#include "text_encoding.h"
#include "usage_error.h"
#include "words.h"

namespace quiver_tool {
namespace {

using QV_2_9::search_category_t;

/// The options of one kind; those that a kind does not have are null.
struct FindCommand {
  QV_2_9::search_category_t category = QV_2_9::scBinaryFiles;
  CLI::Option* name = nullptr;
  PlaceOptions places;
  CLI::Option* binary = nullptr;
  CLI::Option* md5 = nullptr;
  CLI::Option* modificationTime = nullptr;
  CLI::Option* size = nullptr;
  CLI::Option* notNewerThan = nullptr;
  CLI::Option* suggestion = nullptr;
  CLI::Option* all = nullptr;
  CLI::Option* json = nullptr;
  CLI::Option* verbose = nullptr;
};

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

std::optional<std::wstring> md5Of(const CLI::Option& option) {
  if (!isGiven(&option))
    return std::nullopt;
  std::wstring text = toWide(option.results().back());
  checkMd5Text(text);
  return text;
}

void rejectSecondCheck(const FindCommand& command) {
  const bool isTimed = isGiven(command.modificationTime) || isGiven(command.size);
  if (isGiven(command.md5) + isTimed + isGiven(command.notNewerThan) > 1)
    throw UsageError("--md5, --mtime with --size, and --not-newer-than exclude each other");
}

std::optional<std::wstring> referenceOf(const CLI::Option* option) {
  std::optional<std::wstring> path = textOf(option);
  std::error_code error;
  if (path && !std::filesystem::is_regular_file(toNativePath(*path), error))
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

FindOptions readFindOptions(const FindCommand& command) {
  FindOptions options;
  options.category = command.category;
  options.name = textOf(command.name).value_or(std::wstring());
  readPlaces(command.places, command.category, options);
  if (options.isArchivingFound && options.results.empty())
    throw UsageError("--archive-found needs a result directory: --result or --parent");
  options.binary = textOf(command.binary);
  readChecks(command, options);
  options.suggestion = textOf(command.suggestion);
  options.isAll = isGiven(command.all);
  options.isJson = isGiven(command.json);
  options.isVerbose = isGiven(command.verbose);
  return options;
}

}  // namespace

ProgramCommand addFindCommand(CLI::App& find, search_category_t category) {
  ProgramCommand command = addLookupCommand(find, category, kindDescription(category), runFind);
  command.app->footer(kindExamples(category));
  return command;
}

ProgramCommand addLookupCommand(CLI::App& parent,
                                search_category_t category,
                                const char* description,
                                Answer (*run)(const FindOptions&)) {
  FindCommand command;
  CLI::App& app = *parent.add_subcommand(categoryWord(category), description);
  command.category = category;
  command.name = addText(app, "NAME", "", "Recorded path or bare file name")->required();
  addPlaceOptions(app, command.places);
  if (category != QV_2_9::scBinaryFiles)
    command.binary = addText(app, "--binary", "FILE", "The binary that the file belongs to");
  addChecks(app, command);
  if (category == QV_2_9::scSymbolFiles)
    addServerOptions(app, command.places);
  command.suggestion = addText(app, "--suggest", "PATH", "Path to try before any step");
  addSystemOption(app, command.places);
  command.all = addFlag(app, "--all", "Run every step and list all valid candidates");
  command.json = addFlag(app, "--json", "Print the result as JSON");
  command.verbose =
      addFlag(app, "-v,--verbose", "Show how the file was found and what was rejected");
  return {&app, parent.get_name() + " " + categoryWord(category), [command, run] {
            return [options = readFindOptions(command), run] { return run(options); };
          }};
}

}  // namespace quiver_tool
